#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace KesProgram {

/// Makes the HTML report of a program: its data as XML through a stylesheet. Used in
/// `ProgramModel::createReport`. Any thread.
class KES_EXPORT XslReportManager {
public:
    /// The path of the stylesheet; read by each report.
    explicit XslReportManager(const std::string& xslFile);

    /// Writes the report to `outputFile`, making its folder when needed; with an empty path, to "report.html"
    /// in the family's documents folder, over the previous one. Returns the path, also when no report could
    /// be made; the log then says why.
    std::string createReport(const std::string& xmlFile, std::string outputFile);

private:
    std::string _xslFile;
};

} // namespace KesProgram
