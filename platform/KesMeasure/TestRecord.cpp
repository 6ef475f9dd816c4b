#include <KesMeasure/TestRecord.h>

#include <KesMeasure/SinglesXml.h>
#include <KesMeasure/StateXml.h>

#include <libxml++/libxml++.h>

#include <cmath>

namespace KesMeasure {

namespace {

std::optional<Reading> readReading(const xmlpp::Element& element, const PlannedMeasurement& planned)
{
    XmlAttributes attributes(element);
    Reading reading;
    const bool isPlanned = attributes.text("id") == planned.id;
    reading.state = StateXml::readState(attributes);
    auto singles = SinglesXml::read(element);
    if (!isPlanned || !singles)
        return std::nullopt;
    if (!singles->empty())
        reading = Reading::ofSingles(std::move(*singles), reading);
    else if (reading.state == MeasureState::Measured)
        reading.value = attributes.number("value");
    const bool isRead = attributes.isGood() && std::isfinite(reading.value);
    return isRead ? std::optional(reading) : std::nullopt;
}

} // namespace

void TestRecord::writeResults(xmlpp::Element& element, const MeasurementPlan& plan) const
{
    StateXml::write(element, end);
    element.add_child("settings")->set_child_text(settings);
    for (std::size_t i = 0; i < readings.size() && i < plan.size(); ++i) {
        auto& child = *element.add_child("measurement");
        setAttribute(child, "id", plan[i].id);
        StateXml::write(child, readings[i].state);
        if (readings[i].state == MeasureState::Measured && readings[i].singles.empty())
            setAttribute(child, "value", readings[i].value);
        SinglesXml::write(child, readings[i].singles);
    }
}

std::string TestRecord::getResultsXml(const MeasurementPlan& plan) const
{
    return writeXml("results", [&](xmlpp::Element& root) { writeResults(root, plan); });
}

std::optional<std::string> TestRecord::readSettings(const xmlpp::Element& element)
{
    const auto* child = dynamic_cast<const xmlpp::Element*>(element.get_first_child("settings"));
    const auto* text = child ? child->get_child_text() : nullptr;
    return text ? std::optional(text->get_content().raw()) : std::nullopt;
}

std::optional<TestRecord> TestRecord::readResults(const xmlpp::Element& element, const MeasurementPlan& plan)
{
    XmlAttributes attributes(element);
    TestRecord record;
    record.settings = readSettings(element).value_or("");
    record.end = StateXml::readEnd(attributes);
    if (!attributes.isGood() || record.settings.empty())
        return std::nullopt;
    for (const auto* child : element.get_children("measurement")) {
        const auto* measured = dynamic_cast<const xmlpp::Element*>(child);
        const std::size_t index = record.readings.size();
        const auto reading =
            measured && index < plan.size() ? readReading(*measured, plan[index]) : std::nullopt;
        if (!reading)
            return std::nullopt;
        record.readings.push_back(*reading);
    }
    const bool isWhole = record.readings.size() == plan.size();
    return record.end == RunEnd::Complete && !isWhole ? std::nullopt : std::optional(record);
}

} // namespace KesMeasure
