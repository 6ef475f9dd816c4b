#include <Overcurrent/data/ResultsXml.h>

#include <Overcurrent/data/PlanXml.h>

#include <KesMeasure/SinglesXml.h>
#include <KesMeasure/StateXml.h>

#include <libxml++/libxml++.h>

#include <algorithm>
#include <chrono>
#include <cmath>

namespace Overcurrent::ResultsXml {

namespace {

using KesMeasure::setAttribute;
using KesMeasure::XmlAttributes;
namespace StateXml = KesMeasure::StateXml;

void writePoint(xmlpp::Element& parent, const PointResult& point)
{
    auto& element = *parent.add_child("point");
    setAttribute(element, "fault", Faults::wordOf(point.fault));
    setAttribute(element, "multiple", point.multiple);
    StateXml::write(element, point.state);
    if (point.state == MeasureState::Measured)
        setAttribute(element, "microseconds", std::to_string(point.time.count()));
    std::vector<double> singles;
    for (const auto time : point.singles)
        singles.push_back(static_cast<double>(time.count()));
    KesMeasure::SinglesXml::write(element, singles);
}

void writeRamp(xmlpp::Element& parent, const char* name, const std::optional<RampResult>& ramp)
{
    if (!ramp)
        return;
    auto& element = *parent.add_child(name);
    StateXml::write(element, ramp->state);
    if (ramp->state != MeasureState::Measured)
        return;
    setAttribute(element, "without", ramp->without);
    setAttribute(element, "multiple", ramp->multiple);
}

bool isTimeOf(const TestPlan& plan, KesDriver::DeviceTime time)
{
    // A device may see the contact a moment after it has ended the step.
    const std::chrono::duration<double> latest(plan.timeout + 1.0);
    return time.count() >= 0 && time <= latest;
}

/// Nothing when they are no times of such a plan.
std::optional<std::vector<KesDriver::DeviceTime>> readSingles(const xmlpp::Element& element,
                                                              const TestPlan& plan)
{
    const auto values = KesMeasure::SinglesXml::read(element);
    if (!values)
        return std::nullopt;
    std::vector<KesDriver::DeviceTime> times;
    for (const double value : *values) {
        if (value < 0.0 || value > (plan.timeout + 1.0) * 1e6)
            return std::nullopt;
        times.emplace_back(std::llround(value));
    }
    return times;
}

bool readPoint(const xmlpp::Element& element, const TestPlan& plan, ArchiveForm form, PointResult& point)
{
    XmlAttributes attributes(element);
    if (form == ArchiveForm::Present) {
        const auto fault = Faults::find(attributes.text("fault"));
        if (!fault)
            return false;
        point.fault = *fault;
    }
    point.multiple = attributes.number("multiple");
    point.state = StateXml::readState(attributes);
    const auto singles = readSingles(element, plan);
    if (!attributes.isGood() || !singles)
        return false;
    if (point.state == MeasureState::Measured && singles->empty())
        point.time = KesDriver::DeviceTime(attributes.integer("microseconds"));
    point.takeSingles(*singles);
    return attributes.isGood() && isTimeOf(plan, point.time);
}

/// Form 2 holds the step with the change only; the one before it is a step of the plan away.
double stepBefore(const Ramp& plan, double multiple)
{
    return plan.to > plan.from ? std::max(multiple - plan.step, plan.from)
                               : std::min(multiple + plan.step, plan.from);
}

bool readRamp(const xmlpp::Element& parent, const char* name, const Ramp& plan, ArchiveForm form,
              std::optional<RampResult>& ramp)
{
    const auto found = parent.get_children(name);
    if (found.empty())
        return true;
    const auto* element = dynamic_cast<const xmlpp::Element*>(found.front());
    if (!element || found.size() > 1)
        return false;
    XmlAttributes attributes(*element);
    RampResult result;
    result.state = StateXml::readState(attributes);
    if (result.state == MeasureState::Measured) {
        result.multiple = attributes.number("multiple");
        result.without =
            form != ArchiveForm::Second ? attributes.number("without") : stepBefore(plan, result.multiple);
    }
    ramp = result;
    const auto [least, most] = std::minmax(plan.from, plan.to);
    const auto isOnRamp = [&, least = least, most = most](double multiple) {
        return multiple >= least - plan.step && multiple <= most + plan.step;
    };
    return attributes.isGood() && (result.state != MeasureState::Measured ||
                                   (isOnRamp(result.multiple) && isOnRamp(result.without)));
}

template <typename Read>
auto readChild(const xmlpp::Element& parent, const char* name, Read read) -> decltype(read(parent))
{
    const auto* element = dynamic_cast<const xmlpp::Element*>(parent.get_first_child(name));
    return element ? read(*element) : std::nullopt;
}

/// The points of a test are the first ones of its plan.
bool readPoints(const xmlpp::Element& parent, ArchiveForm form, TestResults& results)
{
    const auto planned = results.plan.getPoints();
    for (const auto* child : parent.get_children("point")) {
        const auto* element = dynamic_cast<const xmlpp::Element*>(child);
        const std::size_t index = results.points.size();
        PointResult point;
        if (!element || index >= planned.size() || !readPoint(*element, results.plan, form, point) ||
            static_cast<const PlannedPoint&>(point) != planned[index])
            return false;
        results.points.push_back(point);
    }
    return true;
}

bool isConsistent(const TestResults& results)
{
    const bool allPoints = results.points.size() == results.plan.countPoints();
    if ((results.pickUp && !allPoints) || (results.dropOff && !results.pickUp))
        return false;
    if (!results.settings.hasRamps() && (results.pickUp || results.dropOff))
        return false;
    return results.end != RunEnd::Complete || isWhole(results);
}

} // namespace

void write(xmlpp::Element& element, const TestResults& results)
{
    StateXml::write(element, results.end);
    PlanXml::write(*element.add_child("settings"), results.settings);
    PlanXml::write(*element.add_child("plan"), results.plan);
    for (const auto& point : results.points)
        writePoint(element, point);
    writeRamp(element, "pickUp", results.pickUp);
    writeRamp(element, "dropOff", results.dropOff);
}

std::string toText(const TestResults* results)
{
    return KesMeasure::writeXml("results", [results](xmlpp::Element& root) {
        if (results)
            write(root, *results);
    });
}

std::optional<TestResults> read(const xmlpp::Element& element, ArchiveForm form)
{
    auto settings = readChild(
        element, "settings", [&](const xmlpp::Element& child) { return PlanXml::readSettings(child, form); });
    const auto plan =
        readChild(element, "plan", [&](const xmlpp::Element& child) { return PlanXml::read(child, form); });
    if (!settings || !plan)
        return std::nullopt;
    // Form 2 knows no tolerance of the current, and allows plans that leave no room for one.
    if (form == ArchiveForm::Second && !plan->checkTimes(*settings))
        settings->currentTolerancePercent = 0.0;
    if (!plan->checkTimes(*settings))
        return std::nullopt;
    XmlAttributes attributes(element);
    TestResults results;
    results.settings = *settings;
    results.plan = *plan;
    results.end = StateXml::readEnd(attributes);
    const bool isRead = attributes.isGood() && readPoints(element, form, results) &&
                        readRamp(element, "pickUp", plan->pickUp, form, results.pickUp) &&
                        readRamp(element, "dropOff", plan->dropOff, form, results.dropOff);
    return isRead && isConsistent(results) ? std::optional(results) : std::nullopt;
}

} // namespace Overcurrent::ResultsXml
