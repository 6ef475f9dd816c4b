#include <Overcurrent/data/PlanXml.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

namespace Overcurrent::PlanXml {

namespace {

using KesMeasure::setAttribute;
using KesMeasure::wordOf;
using KesMeasure::XmlAttributes;

using namespace KesTree::RelayNodes;

constexpr std::pair<const char*, CurveKind> curves[] = {
    {"standardInverse", StandardInverse},   {"veryInverse", VeryInverse},
    {"extremelyInverse", ExtremelyInverse}, {"longTimeInverse", LongTimeInverse},
    {"definiteTime", DefiniteTimeCurve},    {"ieeeModeratelyInverse", IeeeModeratelyInverse},
    {"ieeeVeryInverse", IeeeVeryInverse},   {"ieeeExtremelyInverse", IeeeExtremelyInverse}};

constexpr std::pair<const char*, TimeToleranceKind> toleranceKinds[] = {{"same", SameTolerance},
                                                                        {"assignedError", AssignedError}};

constexpr std::pair<const char*, RampContactKind> rampContacts[] = {
    {"start", ByStartContact}, {"trip", ByTripContact}, {"none", NoRamps}};

constexpr std::pair<const char*, bool> decisions[] = {{"false", false}, {"true", true}};

/// A number of the settings that form 2 does not hold.
struct LaterNumber {
    const char* name;
    double RelaySettings::*value;
};

constexpr LaterNumber laterNumbers[] = {
    {"currentTolerance", &RelaySettings::currentTolerancePercent},
    {"debounce", &RelaySettings::debounceMilliseconds},
    {"resetTime", &RelaySettings::resetTime},
    {"continuousWithstand", &RelaySettings::continuousWithstand},
    {"tenSecondWithstand", &RelaySettings::tenSecondWithstand},
    {"oneSecondWithstand", &RelaySettings::oneSecondWithstand},
};

constexpr std::pair<const char*, unsigned RelaySettings::*> inputs[] = {
    {"tripInput", &RelaySettings::tripInput}, {"startInput", &RelaySettings::startInput}};

constexpr const char* repetitionsName = "repetitions";

/// 0 for what no plan has.
unsigned readRepetitions(XmlAttributes& attributes)
{
    const long long number = attributes.integer(repetitionsName);
    return number >= 1 && number <= TestPlan::maximumRepetitions ? static_cast<unsigned>(number) : 0U;
}

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

bool areContactsSensible(const RelaySettings& settings)
{
    constexpr unsigned mostInputs = 64;
    const auto isInput = [](unsigned input) { return input >= 1 && input <= mostInputs; };
    const bool areDifferent =
        settings.tripInput != settings.startInput || settings.rampContact != ByStartContact;
    return isInput(settings.tripInput) && isInput(settings.startInput) && areDifferent &&
           settings.debounceMilliseconds >= 0.0 && settings.debounceMilliseconds <= 100.0 &&
           settings.resetTime >= 0.0 && settings.resetTime <= 60.0;
}

bool isSensible(const RelaySettings& settings)
{
    return settings.nominalCurrent > 0.0 && settings.settingCurrent > 0.0 && settings.timeMultiplier > 0.0 &&
           settings.definiteTime > 0.0 && settings.tolerancePercent >= 0.0 &&
           settings.toleranceMilliseconds >= 0.0 &&
           settings.tolerancePercent + settings.toleranceMilliseconds > 0.0 &&
           settings.currentTolerancePercent >= 0.0 && settings.currentTolerancePercent <= 20.0 &&
           settings.continuousWithstand > 0.0 && settings.tenSecondWithstand > settings.continuousWithstand &&
           settings.oneSecondWithstand > settings.tenSecondWithstand && areContactsSensible(settings);
}

/// What form 2 does not hold.
void readLaterSettings(XmlAttributes& attributes, RelaySettings& settings)
{
    settings.toleranceKind = attributes.choice("toleranceKind", toleranceKinds);
    settings.rampContact = attributes.choice("rampContact", rampContacts);
    for (const auto& [name, value] : laterNumbers)
        settings.*value = attributes.number(name);
    for (const auto& [name, value] : inputs) {
        const long long number = attributes.integer(name);
        settings.*value = number > 0 && number < 1000 ? static_cast<unsigned>(number) : 0U;
    }
}

} // namespace

void write(xmlpp::Element& element, const TestPlan& plan)
{
    setAttribute(element, "timeout", plan.timeout);
    setAttribute(element, "pause", plan.pause);
    setAttribute(element, "pickUpTolerance", plan.pickUpTolerancePercent);
    setAttribute(element, "minimumRatio", plan.minimumRatio);
    setAttribute(element, "goesOn", wordOf(plan.goesOn, decisions));
    // Results of plans that know no repetitions keep their checksum.
    if (plan.repetitions != 1)
        setAttribute(element, repetitionsName, std::to_string(plan.repetitions));
    for (const double multiple : plan.multiples)
        setAttribute(*element.add_child("point"), "multiple", multiple);
    writeRamp(element, "pickUp", plan.pickUp);
    writeRamp(element, "dropOff", plan.dropOff);
}

std::optional<TestPlan> read(const xmlpp::Element& element, ArchiveForm form)
{
    XmlAttributes attributes(element);
    TestPlan plan;
    plan.timeout = attributes.number("timeout");
    plan.pause = attributes.number("pause");
    plan.pickUpTolerancePercent = attributes.number("pickUpTolerance");
    plan.minimumRatio = attributes.number("minimumRatio");
    if (form == ArchiveForm::Present)
        plan.goesOn = attributes.choice("goesOn", decisions);
    if (element.get_attribute(repetitionsName))
        plan.repetitions = readRepetitions(attributes);
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
    setAttribute(element, "toleranceKind", wordOf(settings.toleranceKind, toleranceKinds));
    setAttribute(element, "rampContact", wordOf(settings.rampContact, rampContacts));
    for (const auto& [name, value] : laterNumbers)
        setAttribute(element, name, settings.*value);
    for (const auto& [name, value] : inputs)
        setAttribute(element, name, std::to_string(settings.*value));
}

std::optional<RelaySettings> readSettings(const xmlpp::Element& element, ArchiveForm form)
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
    if (form == ArchiveForm::Present)
        readLaterSettings(attributes, settings);
    return attributes.isGood() && isSensible(settings) ? std::optional(settings) : std::nullopt;
}

} // namespace Overcurrent::PlanXml
