#include <KesMeasure/ReportFile.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/XslTransformer.h>
#include <KesMeasure/MeasureText.h>
#include <KesMeasure/detail/PdfPrinter.h>

#include <glib.h>
#include <glibmm/convert.h>
#include <glibmm/fileutils.h>
#include <glibmm/utility.h>

#include <filesystem>
#include <system_error>

namespace KesMeasure {

namespace {

constexpr const char* htmlName = "report.html";
constexpr const char* pdfName = "report.pdf";

/// A folder of its own, gone after its use. Not one of the program's: a report needs none that can be
/// written.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        GError* error = nullptr;
        _path = Glib::convert_return_gchar_ptr_to_stdstring(g_dir_make_tmp("kes-report-XXXXXX", &error));
        if (error)
            throw Glib::FileError(error);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string getFile(const std::string& name) const { return _path + "/" + name; }

private:
    std::string _path;
};

/// A name may hold any bytes; stylesheets take UTF-8 only.
std::string toShownName(const std::string& path)
{
    return Glib::filename_display_basename(path).raw();
}

Kes::Result transform(const TemporaryFolder& folder, const std::string& data, const std::string& stylesheet,
                      const ReportFile::Foot& foot)
{
    const std::string source = folder.getFile("report.xml");
    if (auto written = Kes::writeWholeFile(source, data); !written)
        return written;
    Kes::XslTransformer transformer(source.c_str(), Kes::findDataFile(stylesheet).c_str(),
                                    folder.getFile(htmlName).c_str());
    transformer.setParameter("file", foot.file);
    transformer.setParameter("program", foot.program);
    return transformer.transform() ? Kes::Result(true)
                                   : Kes::Result::failure(lng::Measure::get("Report.failed"));
}

} // namespace

bool ReportFile::isPdf(const std::string& path)
{
    return Glib::ustring(std::filesystem::path(path).extension().string()).lowercase() == ".pdf";
}

Kes::Result ReportFile::write(const std::string& path, const std::string& data, const std::string& stylesheet,
                              const Foot& foot, const Glib::RefPtr<Gio::Cancellable>& cancellable)
try {
    const TemporaryFolder folder;
    const auto file = toShownName(foot.file.empty() ? path : foot.file);
    if (auto made = transform(folder, data, stylesheet, {file, foot.program}); !made)
        return made;
    const auto html = folder.getFile(htmlName);
    const auto pdf = folder.getFile(pdfName);
    if (isPdf(path))
        if (auto printed = PdfPrinter::print(html, pdf, cancellable); !printed)
            return printed;
    const std::string report = Kes::readWholeFile(isPdf(path) ? pdf : html);
    // A file that cannot be read gives nothing.
    if (report.empty())
        return Kes::Result::failure(lng::Measure::get("Report.failed"));
    return Kes::writeWholeFile(path, report);
} catch (const Glib::FileError& error) {
    return Kes::Result::failure(error.what().raw());
}

} // namespace KesMeasure
