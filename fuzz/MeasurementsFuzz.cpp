// The measured values of a test that is a list of measurements (test-results.xml of VoltageFrequency). What was
// read can be written, and what was written reads back as the same.

#include "Require.h"

#include <KesMeasure/TestRecord.h>
#include <KesMeasure/XmlAttributes.h>
#include <VoltageFrequency/model/VoltageFrequencyTest.h>

#include <libxml++/libxml++.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace {

using KesMeasure::TestRecord;

const KesMeasure::MeasurementPlan& getPlan()
{
    using namespace VoltageFrequency;
    static const auto plan = VoltageFrequencyTest(Settings::fromNode(*makeTestObject())).createPlan();
    return plan;
}

std::optional<TestRecord> read(const std::string& text)
{
    std::optional<TestRecord> record;
    KesMeasure::readXml(text, "results", [&](const xmlpp::Element& element) {
        (void)TestRecord::readSettings(element);
        record = TestRecord::readResults(element, getPlan());
        return record.has_value();
    });
    return record;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const auto record = read(std::string(reinterpret_cast<const char*>(bytes), size));
    if (!record)
        return 0;
    const auto again = read(record->getResultsXml(getPlan()));
    require(again.has_value(), "what was written is read");
    require(again->readings == record->readings && again->end == record->end, "it reads back as the same");
    return 0;
}
