#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/TestCircumstances.h>
#include <KesMeasure/TestState.h>

#include <cstddef>
#include <string>

namespace KesMeasure {

/// What every test that has begun has, whatever it measures: its end and its circumstances. A value, the base
/// of a program's results. Any thread.
struct KES_EXPORT MeasuredTest : TestCircumstances {
    /// How it ended; `RunEnd::Running` while it is under way.
    RunEnd end = RunEnd::Running;

    bool operator==(const MeasuredTest&) const = default;

    /// `isPassed`: whether everything is measured and passes; plays a part for a complete test only.
    Verdict judge(bool isPassed) const;

    /// "8 results of 2026-11-20 14:05" for that many, in the language of the process.
    std::string summarize(std::size_t count) const;
};

} // namespace KesMeasure
