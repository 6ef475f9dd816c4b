#include <Overcurrent/data/PlanXml.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

namespace Overcurrent::PlanXml {

namespace {

using KesMeasure::setAttribute;
using KesMeasure::wordOf;
using KesMeasure::XmlAttributes;

using namespace KesTree::RelayNodes;

constexpr std::pair<const char*, CurveKind> curves[] = {{"standardInverse", StandardInverse},
                                                        {"veryInverse", VeryInverse},
                                                        {"extremelyInverse", ExtremelyInverse},
                                                        {"longTimeInverse", LongTimeInverse},
                                                        {"definiteTime", DefiniteTimeCurve}};

void writeRamp(xmlpp::Element& parent, const char* name, const Ramp& ramp)
{
    auto& element = *parent.add_child(name);
    setAttribute(element, "from", ramp.from);
    setAttribute(element, "to", ramp.to);
    setAttribute(element, "step", ramp.step);
    setAttribute(element, "dwell", ramp.dwell);
}

/// The only child element of that name.
const xmlpp::Element* onlyChild(const xmlpp::Element& parent, const char* name)
{
    const auto found = parent.get_children(name);
    return found.size() == 1 ? dynamic_cast<const xmlpp::Element*>(found.front()) : nullptr;
}

bool readRamp(const xmlpp::Element& parent, const char* name, Ramp& ramp)
{
    const auto* element = onlyChild(parent, name);
    if (!element)
        return false;
    XmlAttributes attributes(*element);
    ramp.from = attributes.number("from");
    ramp.to = attributes.number("to");
    ramp.step = attributes.number("step");
    ramp.dwell = attributes.number("dwell");
    return attributes.isGood();
}

bool readMultiples(const xmlpp::Element& parent, std::vector<double>& multiples)
{
    multiples.clear();
    for (const auto* child : parent.get_children("point")) {
        const auto* element = dynamic_cast<const xmlpp::Element*>(child);
        if (!element)
            return false;
        XmlAttributes attributes(*element);
        multiples.push_back(attributes.number("multiple"));
        if (!attributes.isGood())
            return false;
    }
    return true;
}

bool isSensible(const RelaySettings& settings)
{
    return settings.nominalCurrent > 0.0 && settings.settingCurrent > 0.0 && settings.timeMultiplier > 0.0 &&
           settings.definiteTime > 0.0 && settings.tolerancePercent >= 0.0 &&
           settings.toleranceMilliseconds >= 0.0 &&
           settings.tolerancePercent + settings.toleranceMilliseconds > 0.0;
}

} // namespace

void write(xmlpp::Element& element, const TestPlan& plan)
{
    setAttribute(element, "timeout", plan.timeout);
    setAttribute(element, "pause", plan.pause);
    setAttribute(element, "pickUpTolerance", plan.pickUpTolerancePercent);
    setAttribute(element, "minimumRatio", plan.minimumRatio);
    for (const double multiple : plan.multiples)
        setAttribute(*element.add_child("point"), "multiple", multiple);
    writeRamp(element, "pickUp", plan.pickUp);
    writeRamp(element, "dropOff", plan.dropOff);
}

std::optional<TestPlan> read(const xmlpp::Element& element)
{
    XmlAttributes attributes(element);
    TestPlan plan;
    plan.timeout = attributes.number("timeout");
    plan.pause = attributes.number("pause");
    plan.pickUpTolerancePercent = attributes.number("pickUpTolerance");
    plan.minimumRatio = attributes.number("minimumRatio");
    const bool isRead = attributes.isGood() && readMultiples(element, plan.multiples) &&
                        readRamp(element, "pickUp", plan.pickUp) &&
                        readRamp(element, "dropOff", plan.dropOff);
    return isRead && plan.check() ? std::optional(plan) : std::nullopt;
}

void write(xmlpp::Element& element, const RelaySettings& settings)
{
    setAttribute(element, NominalCurrent, settings.nominalCurrent);
    setAttribute(element, SettingCurrent, settings.settingCurrent);
    setAttribute(element, TimeMultiplier, settings.timeMultiplier);
    setAttribute(element, Curve, wordOf(settings.curve, curves));
    setAttribute(element, DefiniteTime, settings.definiteTime);
    setAttribute(element, TolerancePercent, settings.tolerancePercent);
    setAttribute(element, ToleranceMilliseconds, settings.toleranceMilliseconds);
}

std::optional<RelaySettings> readSettings(const xmlpp::Element& element)
{
    XmlAttributes attributes(element);
    RelaySettings settings;
    settings.nominalCurrent = attributes.number(NominalCurrent);
    settings.settingCurrent = attributes.number(SettingCurrent);
    settings.timeMultiplier = attributes.number(TimeMultiplier);
    settings.curve = attributes.choice(Curve, curves);
    settings.definiteTime = attributes.number(DefiniteTime);
    settings.tolerancePercent = attributes.number(TolerancePercent);
    settings.toleranceMilliseconds = attributes.number(ToleranceMilliseconds);
    return attributes.isGood() && isSensible(settings) ? std::optional(settings) : std::nullopt;
}

} // namespace Overcurrent::PlanXml
