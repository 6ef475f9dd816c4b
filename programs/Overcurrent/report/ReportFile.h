#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesCommon/Result.h>

#include <string>

namespace Overcurrent {

/// Makes the HTML report from the data and the program's stylesheet, with a folder for temporary files that
/// is gone afterwards. GUI thread.
class ReportFile {
public:
    /// Writes the report; the file appears whole or not at all. `results` may be null. The failure's text can
    /// be shown to the user.
    static Kes::Result write(const std::string& path, const RelaySettings& settings, const TestPlan& plan,
                             const TestResults* results, bool areResultsLost = false);
};

} // namespace Overcurrent
