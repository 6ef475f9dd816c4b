#pragma once

#include <Overcurrent/data/TestResults.h>

#include <cstddef>
#include <optional>
#include <string>

/// What an archive holds, in few words. Any thread.
namespace Overcurrent::DataSummary {

/// Points, pick-up and drop-off values.
std::size_t countMeasured(const TestResults& results);
std::size_t countPlanned(const TestResults& results);

/// "8 results of 2026-11-20 14:05", in the language of the process.
std::string text(const std::optional<TestResults>& results);

} // namespace Overcurrent::DataSummary
