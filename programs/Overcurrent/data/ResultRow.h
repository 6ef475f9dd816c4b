#pragma once

#include <Overcurrent/data/TestResults.h>

#include <string>
#include <vector>

namespace Overcurrent {

/// How a measured value is to be shown.
enum class Mark { None, Passed, Failed };

/// One measured point as texts for people, in the language of the process. Any thread.
struct ResultRow {
    std::string number;
    std::string multiple;
    std::string current;
    std::string expected;
    std::string measured;
    std::string deviation;
    std::string deviationPercent;
    std::string tolerance;
    std::string verdict;
    Mark mark = Mark::None;

    bool operator==(const ResultRow&) const = default;

    static std::vector<ResultRow> create(const TestResults& results);
};

/// Pick-up, drop-off or their ratio as texts.
struct ResultValue {
    std::string name;
    std::string value;
    std::string verdict;
    Mark mark = Mark::None;

    bool operator==(const ResultValue&) const = default;

    /// Pick-up, drop-off and ratio, in this order; without a test the values are dashes.
    static std::vector<ResultValue> create(const TestResults* results);
};

} // namespace Overcurrent
