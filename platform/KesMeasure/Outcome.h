#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Mark.h>
#include <KesMeasure/TestCircumstances.h>

#include <string>

namespace KesMeasure {

/// How a test ended, in one line for people. Any thread.
struct KES_EXPORT Outcome {
    std::string text;
    Mark mark = Mark::None;

    /// Before the first test; `areResultsLost`: there was one, but its results could not be read.
    static Outcome withoutTest(bool areResultsLost);

    /// The words for a verdict, such as "Test passed", in the language of the process.
    static const char* getTitle(Verdict verdict);
    static Mark getMark(Verdict verdict);

    /// As it is, or, when the file of the results has been changed by hand, saying so and without the sign
    /// of a passed test.
    Outcome withCircumstances(const TestCircumstances& circumstances) const;
};

} // namespace KesMeasure
