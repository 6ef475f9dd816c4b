#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/TestState.h>

#include <cstddef>
#include <string>

namespace xmlpp {
class Element;
}

namespace KesMeasure {

/// What every test that has begun has, whatever it measures: its end and its circumstances. A value, the base
/// of a program's results. Any thread.
struct KES_EXPORT MeasuredTest {
    RunEnd end = RunEnd::Running;
    /// The device of the test, as it calls itself; empty when it is not known.
    std::string device;
    Origin origin = Origin::Device;
    /// When the test began, as "2024-03-01 14:05:09" in local time; empty when it is not known.
    std::string startedAt;

    bool operator==(const MeasuredTest&) const = default;

    /// `isPassed`: whether everything is measured and passes; plays a part for a complete test only.
    Verdict judge(bool isPassed) const;

    /// "8 results of 2026-11-20 14:05" for that many, in the language of the process.
    std::string summarize(std::size_t count) const;

    /// Device, origin and beginning. The reading changes nothing when one of them is missing or unreadable.
    void writeCircumstances(xmlpp::Element& element) const;
    bool readCircumstances(const xmlpp::Element& element);
};

} // namespace KesMeasure
