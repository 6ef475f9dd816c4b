#include <Overcurrent/data/PlanXml.h>

#include <KesMeasure/XmlAttributes.h>

#include <libxml++/libxml++.h>

#include <algorithm>
#include <cmath>
#include <sstream>

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
                                                        {"definiteTime", DefiniteTimeCurve},
                                                        {"ieeeModeratelyInverse", IeeeModeratelyInverse},
                                                        {"ieeeVeryInverse", IeeeVeryInverse},
                                                        {"ieeeExtremelyInverse", IeeeExtremelyInverse},
                                                        {"table", TableCurve}};

constexpr std::pair<const char*, DirectionKind> stageDirections[] = {
    {"none", NonDirectional}, {"forward", ForwardOnly}, {"reverse", ReverseOnly}};

constexpr std::pair<const char*, FaultDirection> faultDirections[] = {{"forward", FaultDirection::Forward},
                                                                      {"reverse", FaultDirection::Reverse}};

/// The names of the stages' elements, and that of the older forms' only one.
constexpr const char* stageNames[] = {"stage1", "stage2", "stage3", "residualStage"};

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

bool readFaults(const std::string& text, std::vector<Fault>& faults)
{
    faults.clear();
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const auto fault = Faults::find(word);
        if (!fault)
            return false;
        faults.push_back(*fault);
    }
    return true;
}

/// What an older form does not hold.
bool readLaterPlan(XmlAttributes& attributes, TestPlan& plan)
{
    plan.direction = attributes.choice("direction", faultDirections);
    const long long outputs = attributes.integer("outputsPerPhase");
    plan.outputsPerPhase =
        outputs >= 1 && outputs <= TestPlan::outputCount ? static_cast<unsigned>(outputs) : 0U;
    return readFaults(attributes.text("faults"), plan.faults);
}

void writeStage(xmlpp::Element& element, const Stage& stage)
{
    setAttribute(element, StageUsed, wordOf(stage.isUsed, decisions));
    setAttribute(element, StageSetting, stage.settingCurrent);
    setAttribute(element, StageCurve, wordOf(stage.curve, curves));
    setAttribute(element, StageMultiplier, stage.timeMultiplier);
    setAttribute(element, StageTime, stage.definiteTime);
    setAttribute(element, StageTable, KesTree::CurveTable::write(stage.table));
    setAttribute(element, StageDirection, wordOf(stage.direction, stageDirections));
}

/// What the stage of the older forms has too.
void readFormerStage(XmlAttributes& attributes, Stage& stage)
{
    stage.settingCurrent = attributes.number(StageSetting);
    stage.timeMultiplier = attributes.number(StageMultiplier);
    stage.curve = attributes.choice(StageCurve, curves);
    stage.definiteTime = attributes.number(StageTime);
}

bool readStage(const xmlpp::Element& parent, const char* name, Stage& stage)
{
    const auto* element = onlyChild(parent, name);
    if (!element)
        return false;
    XmlAttributes attributes(*element);
    readFormerStage(attributes, stage);
    stage.isUsed = attributes.choice(StageUsed, decisions);
    stage.direction = attributes.choice(StageDirection, stageDirections);
    return KesTree::CurveTable::read(attributes.text(StageTable), stage.table) && attributes.isGood();
}

bool readStages(const xmlpp::Element& element, RelaySettings& settings)
{
    for (std::size_t i = 0; i < settings.stages.size(); ++i)
        if (!readStage(element, stageNames[i], settings.stages[i]))
            return false;
    return true;
}

bool isSensible(const Stage& stage)
{
    return stage.settingCurrent > 0.0 && stage.timeMultiplier > 0.0 && stage.definiteTime > 0.0;
}

bool areStagesSensible(const RelaySettings& settings)
{
    const auto& stages = settings.stages;
    return std::all_of(stages.begin(), stages.end(), [](const Stage& stage) { return isSensible(stage); }) &&
           std::any_of(stages.begin(), stages.end(), [](const Stage& stage) { return stage.isUsed; }) &&
           std::fabs(settings.characteristicAngle) <= 180.0 && settings.nominalVoltage > 0.0;
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
    return settings.nominalCurrent > 0.0 && areStagesSensible(settings) && settings.tolerancePercent >= 0.0 &&
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
    std::string faults;
    for (const auto fault : plan.faults)
        faults += (faults.empty() ? "" : " ") + Faults::wordOf(fault);
    setAttribute(element, "faults", faults);
    setAttribute(element, "direction", wordOf(plan.direction, faultDirections));
    setAttribute(element, "outputsPerPhase", std::to_string(plan.outputsPerPhase));
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
    if (form != ArchiveForm::Second)
        plan.goesOn = attributes.choice("goesOn", decisions);
    if (element.get_attribute(repetitionsName))
        plan.repetitions = readRepetitions(attributes);
    const bool isLaterRead = form != ArchiveForm::Present || readLaterPlan(attributes, plan);
    const bool isRead = isLaterRead && attributes.isGood() && readMultiples(element, plan.multiples) &&
                        readRamp(element, "pickUp", plan.pickUp) &&
                        readRamp(element, "dropOff", plan.dropOff);
    return isRead && plan.check() ? std::optional(plan) : std::nullopt;
}

void write(xmlpp::Element& element, const RelaySettings& settings)
{
    setAttribute(element, NominalCurrent, settings.nominalCurrent);
    setAttribute(element, "characteristicAngle", settings.characteristicAngle);
    setAttribute(element, "nominalVoltage", settings.nominalVoltage);
    setAttribute(element, TolerancePercent, settings.tolerancePercent);
    setAttribute(element, ToleranceMilliseconds, settings.toleranceMilliseconds);
    setAttribute(element, "toleranceKind", wordOf(settings.toleranceKind, toleranceKinds));
    setAttribute(element, "rampContact", wordOf(settings.rampContact, rampContacts));
    for (const auto& [name, value] : laterNumbers)
        setAttribute(element, name, settings.*value);
    for (const auto& [name, value] : inputs)
        setAttribute(element, name, std::to_string(settings.*value));
    for (std::size_t i = 0; i < settings.stages.size(); ++i)
        writeStage(*element.add_child(stageNames[i]), settings.stages[i]);
}

std::optional<RelaySettings> readSettings(const xmlpp::Element& element, ArchiveForm form)
{
    XmlAttributes attributes(element);
    RelaySettings settings;
    settings.nominalCurrent = attributes.number(NominalCurrent);
    settings.tolerancePercent = attributes.number(TolerancePercent);
    settings.toleranceMilliseconds = attributes.number(ToleranceMilliseconds);
    if (form != ArchiveForm::Second)
        readLaterSettings(attributes, settings);
    if (form == ArchiveForm::Present) {
        settings.characteristicAngle = attributes.number("characteristicAngle");
        settings.nominalVoltage = attributes.number("nominalVoltage");
    } else {
        readFormerStage(attributes, settings[StageId::First]);
    }
    const bool areStagesRead = form != ArchiveForm::Present || readStages(element, settings);
    return areStagesRead && attributes.isGood() && isSensible(settings) ? std::optional(settings)
                                                                        : std::nullopt;
}

} // namespace Overcurrent::PlanXml
