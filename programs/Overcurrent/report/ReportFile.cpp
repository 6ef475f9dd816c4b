#include <Overcurrent/report/ReportFile.h>

#include <Overcurrent/report/ReportDocument.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesProgram/archive/XslReportManager.h>

#include <unistd.h>

#include <cstdio>

namespace Overcurrent {

namespace {

/// A file that is gone before and after its use.
struct TemporaryFile {
    explicit TemporaryFile(std::string name) : path(std::move(name)) { std::remove(path.c_str()); }
    ~TemporaryFile() { std::remove(path.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string path;
};

} // namespace

Kes::Result ReportFile::write(const std::string& path, const RelaySettings& settings, const TestPlan& plan,
                              const TestResults* results, bool areResultsLost) const
{
    // Programs that run at the same time share the folder.
    const std::string base = _workingFolder + "report-" + std::to_string(getpid());
    const TemporaryFile data(base + ".xml");
    const TemporaryFile made(base + ".html");
    Kes::mkdir_with_parents(_workingFolder);
    if (auto written =
            Kes::writeWholeFile(data.path, ReportDocument::create(settings, plan, results, areResultsLost));
        !written)
        return written;
    KesProgram::XslReportManager manager(Kes::getDataDir() + "report/overcurrent.xsl");
    const std::string report = Kes::readWholeFile(manager.createReport(data.path, made.path));
    // The transformation tells of a failure only by writing nothing.
    if (report.empty())
        return Kes::Result::failure(lng::Overcurrent::get("Report.failed"));
    return Kes::writeWholeFile(path, report);
}

} // namespace Overcurrent
