#include <KesMeasure/ReportFile.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/XslTransformer.h>
#include <KesMeasure/MeasureText.h>

#include <glib.h>
#include <glibmm/fileutils.h>
#include <glibmm/utility.h>

#include <filesystem>
#include <system_error>

namespace KesMeasure {

namespace {

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

    std::string getFile(const char* name) const { return _path + "/" + name; }

private:
    std::string _path;
};

} // namespace

Kes::Result ReportFile::write(const std::string& path, const std::string& data, const std::string& stylesheet)
try {
    const TemporaryFolder folder;
    const std::string source = folder.getFile("report.xml");
    const std::string made = folder.getFile("report.html");
    if (auto written = Kes::writeWholeFile(source, data); !written)
        return written;
    if (!Kes::XslTransformer(source.c_str(), (Kes::getDataDir() + stylesheet).c_str(), made.c_str())
             .transform())
        return Kes::Result::failure(lng::Measure::get("Report.failed"));
    const std::string report = Kes::readWholeFile(made);
    // A file that cannot be read gives nothing.
    if (report.empty())
        return Kes::Result::failure(lng::Measure::get("Report.failed"));
    return Kes::writeWholeFile(path, report);
} catch (const Glib::FileError& error) {
    return Kes::Result::failure(error.what().raw());
}

} // namespace KesMeasure
