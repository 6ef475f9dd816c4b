#pragma once

#include <Overcurrent/data/ResultRow.h>
#include <Overcurrent/data/TestResults.h>

#include <string>

namespace Overcurrent {

/// How a test ended, in one line for people, in the language of the process. Any thread.
struct Outcome {
    std::string text;
    Mark mark = Mark::None;

    /// Null: no test yet, or one whose results were lost with its file.
    static Outcome create(const TestResults* results, bool areResultsLost = false);
};

} // namespace Overcurrent
