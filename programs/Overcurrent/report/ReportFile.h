#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesCommon/Result.h>

#include <string>

namespace Overcurrent {

/// Makes the HTML report from the data, the program's stylesheet and a working folder. GUI thread.
class ReportFile {
public:
    /// A folder of the program's own, ending with a separator; made when needed.
    explicit ReportFile(std::string workingFolder) : _workingFolder(std::move(workingFolder)) {}

    /// Writes the report; the file appears whole or not at all. `results` may be null. The failure's text can
    /// be shown to the user.
    Kes::Result write(const std::string& path, const RelaySettings& settings, const TestPlan& plan,
                      const TestResults* results, bool areResultsLost = false) const;

private:
    std::string _workingFolder;
};

} // namespace Overcurrent
