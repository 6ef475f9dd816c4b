#include <Overcurrent/report/ReportFile.h>

#include <Overcurrent/report/ReportDocument.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesProgram/archive/XslReportManager.h>

#include <glib.h>
#include <glibmm/fileutils.h>
#include <glibmm/utility.h>

#include <filesystem>
#include <system_error>

namespace Overcurrent {

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

Kes::Result ReportFile::write(const std::string& path, const RelaySettings& settings, const TestPlan& plan,
                              const TestResults* results, bool areResultsLost)
try {
    const TemporaryFolder folder;
    const std::string data = folder.getFile("report.xml");
    if (auto written =
            Kes::writeWholeFile(data, ReportDocument::create(settings, plan, results, areResultsLost));
        !written)
        return written;
    KesProgram::XslReportManager manager(Kes::getDataDir() + "report/overcurrent.xsl");
    const std::string report = Kes::readWholeFile(manager.createReport(data, folder.getFile("report.html")));
    // The transformation tells of a failure only by writing nothing.
    if (report.empty())
        return Kes::Result::failure(lng::Overcurrent::get("Report.failed"));
    return Kes::writeWholeFile(path, report);
} catch (const Glib::FileError& error) {
    return Kes::Result::failure(error.what().raw());
}

} // namespace Overcurrent
