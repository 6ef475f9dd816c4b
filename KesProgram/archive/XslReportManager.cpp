#include <KesProgram/archive/XslReportManager.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/XslTransformer.h>

#include <glibmm/miscutils.h>

namespace KesProgram {

XslReportManager::XslReportManager(const std::string& xslFile) : _xslFile(xslFile) {}

std::string XslReportManager::createReport(const std::string& xmlFile, std::string outputFile)
{
    if (outputFile.empty())
        outputFile = Kes::getKesCrossDocDir() + "report.html";
    // Whatever goes wrong here shows when the caller opens the file, and stands in the log.
    Kes::mkdir_with_parents(Glib::path_get_dirname(outputFile));
    Kes::XslTransformer(xmlFile.c_str(), _xslFile.c_str(), outputFile.c_str()).transform();
    return outputFile;
}

} // namespace KesProgram
