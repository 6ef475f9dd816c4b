#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Measurement.h>

#include <optional>
#include <string>
#include <vector>

namespace xmlpp {
class Element;
}

namespace KesMeasure {

/// What a test has measured and under which circumstances. A value. What follows from the measured values is
/// in `TestEvaluation`.
struct KES_EXPORT TestRecord {
    /// The settings of the test, as the test object's tree writes them: they may be edited afterwards.
    std::string settings;
    /// Of the plan's measurements, from the first one on.
    std::vector<Reading> readings;
    RunEnd end = RunEnd::Running;
    /// The device of the test, as it calls itself; empty when it is not known.
    std::string device;
    Origin origin = Origin::Device;
    /// When the test began, as "2024-03-01 14:05:09" in local time; empty when it is not known.
    std::string startedAt;

    bool operator==(const TestRecord&) const = default;

    /// Puts readings, end and settings into the element; a test under way is written as a stopped one.
    void writeResults(xmlpp::Element& element, const MeasurementPlan& plan) const;
    /// The settings alone, for the plan that `readResults` needs; nothing when there are none.
    static std::optional<std::string> readSettings(const xmlpp::Element& element);
    /// Nothing when it is not what a test with the plan can have given.
    static std::optional<TestRecord> readResults(const xmlpp::Element& element, const MeasurementPlan& plan);

    /// Device, origin and beginning.
    void writeCircumstances(xmlpp::Element& element) const;
    bool readCircumstances(const xmlpp::Element& element);
};

} // namespace KesMeasure
