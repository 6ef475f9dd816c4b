#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/MeasuredTest.h>
#include <KesMeasure/Measurement.h>

#include <optional>
#include <string>
#include <vector>

namespace xmlpp {
class Element;
}

namespace KesMeasure {

/// What a test that is a list of measurements has measured. A value. What follows from the measured values is
/// in `TestEvaluation`.
struct KES_EXPORT TestRecord : MeasuredTest {
    /// The settings of the test, as the test object's tree writes them: they may be edited afterwards.
    std::string settings;
    /// Of the plan's measurements, from the first one on.
    std::vector<Reading> readings;

    bool operator==(const TestRecord&) const = default;

    /// Puts readings, end and settings into the element; a test under way is written as a stopped one.
    void writeResults(xmlpp::Element& element, const MeasurementPlan& plan) const;
    /// The same as a document, for files and their checksum.
    std::string getResultsXml(const MeasurementPlan& plan) const;
    /// The settings alone, for the plan that `readResults` needs; nothing when there are none.
    static std::optional<std::string> readSettings(const xmlpp::Element& element);
    /// Nothing when it is not what a test with the plan can have given.
    static std::optional<TestRecord> readResults(const xmlpp::Element& element, const MeasurementPlan& plan);
};

} // namespace KesMeasure
