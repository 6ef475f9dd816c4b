#include <VoltageFrequency/data/Settings.h>

#include <KesCommon/UnitText.h>
#include <KesMeasure/SinglesXml.h>
#include <KesTreeRelay/RelayNodes.h>
#include <KesTreeRelay/VoltageFrequencyNodes.h>

#include <algorithm>

namespace VoltageFrequency {

namespace Nodes = KesTree::VoltageFrequencyNodes;
using KesTree::Node;

namespace {

constexpr const char* planGroup = "plan";
constexpr const char* healthyTimeId = "healthyTime";
constexpr const char* resetTimeId = "resetTime";
constexpr const char* rampTimeId = "rampTime";
constexpr const char* voltageStepId = "voltageStep";
constexpr const char* frequencyStepId = "frequencyStep";
constexpr const char* rateStepId = "rateStep";
constexpr const char* repetitionsId = "repetitions";

const char* const groups[] = {Nodes::Undervoltage, Nodes::Overvoltage, Nodes::Underfrequency,
                              Nodes::Overfrequency, Nodes::FrequencyRate};

void readValues(const Node& group, StageKind kind, Stage& stage)
{
    const double tolerance = group.find(Nodes::StageTolerance)->getNumber();
    stage.setting = group.find(Nodes::StageSetting)->getNumber();
    const bool isFrequency = kind == Underfrequency || kind == Overfrequency;
    stage.tolerance = isFrequency ? tolerance : stage.setting * tolerance / 100.0;
    if (kind == FrequencyRate && group.find(Nodes::StageDirection)->getChoice() == Nodes::FallingFrequency)
        stage.setting = -stage.setting;
    const double dropOff = group.find(Nodes::StageDropOff)->getNumber();
    stage.dropOff = !isFrequency             ? stage.setting * dropOff
                    : kind == Underfrequency ? stage.setting + dropOff
                                             : stage.setting - dropOff;
}

Stage readStage(const Node& group, StageKind kind)
{
    Stage stage;
    stage.isUsed = group.find(Nodes::StageUsed)->getBoolean();
    stage.delay = group.find(Nodes::StageDelay)->getNumber();
    stage.timeTolerance =
        std::max(stage.delay * group.find(KesTree::RelayNodes::TolerancePercent)->getNumber() / 100.0,
                 group.find(KesTree::RelayNodes::ToleranceMilliseconds)->getNumber() / 1000.0);
    readValues(group, kind, stage);
    return stage;
}

} // namespace

Settings Settings::fromNode(const Node& testObject)
{
    const auto& relay = *testObject.find(Nodes::RelayGroup);
    const auto& plan = *testObject.find(planGroup);
    const auto planned = [&plan](const char* id) { return plan.find(id)->getNumber(); };
    Settings settings;
    settings.nominalVoltage = relay.find(Nodes::NominalVoltage)->getNumber();
    settings.nominalFrequency = relay.find(Nodes::NominalFrequency)->getNumber();
    settings.tripInput = static_cast<unsigned>(relay.find(Nodes::TripInput)->getInteger());
    settings.startInput = static_cast<unsigned>(relay.find(Nodes::StartInput)->getInteger());
    for (std::size_t i = 0; i < StageCount; ++i)
        settings.stages[i] = readStage(*testObject.find(groups[i]), static_cast<StageKind>(i));
    settings.healthyTime = planned(healthyTimeId);
    settings.resetTime = planned(resetTimeId);
    settings.rampTime = planned(rampTimeId);
    settings.voltageStep = planned(voltageStepId) / 100.0;
    settings.frequencyStep = planned(frequencyStepId);
    settings.rateStep = planned(rateStepId) / 100.0;
    settings.repetitions = static_cast<unsigned>(plan.find(repetitionsId)->getInteger());
    return settings;
}

std::unique_ptr<Node> makeTestObject()
{
    auto root = Nodes::voltageFrequencyRelay();
    auto& plan =
        root->add(Node::group(planGroup, {"VoltageFrequencyPlan.testPlan", "Plan", "План проверки"}));
    plan.add(Node::number(healthyTimeId,
                          {"VoltageFrequencyPlan.nominalQuantitiesBefore", "Nominal quantities before",
                           "Номинальный режим перед подачей"},
                          lng::Unit::second, 1.0, 0.1, 60.0));
    plan.add(Node::number(
        resetTimeId,
        {"VoltageFrequencyPlan.resetTimeOfTheRelay", "Reset time of the relay", "Время возврата реле"},
        lng::Unit::second, 2.0, 0.05, 60.0));
    plan.add(Node::number(rampTimeId,
                          {"VoltageFrequencyPlan.rampTimePerTolerance", "Ramp time per tolerance",
                           "Время изменения на один допуск"},
                          lng::Unit::second, 1.0, 0.5, 60.0));
    plan.add(Node::number(voltageStepId,
                          {"VoltageFrequencyPlan.stepBeyondTheVoltageSetting",
                           "Step beyond the voltage setting", "Превышение уставки напряжения"},
                          lng::Unit::percent, 10.0, 1.0, 50.0));
    plan.add(Node::number(frequencyStepId,
                          {"VoltageFrequencyPlan.stepBeyondTheFrequencySetting",
                           "Step beyond the frequency setting", "Превышение уставки частоты"},
                          lng::Unit::hertz, 0.5, 0.05, 5.0));
    plan.add(Node::number(rateStepId,
                          {"VoltageFrequencyPlan.stepBeyondTheRateSetting", "Step beyond the rate setting",
                           "Превышение уставки скорости"},
                          lng::Unit::percent, 20.0, 5.0, 100.0));
    plan.add(Node::integer(repetitionsId,
                           {"VoltageFrequencyPlan.measurementsOfEachValue", "Measurements of each value",
                            "Измерений каждой величины"},
                           {}, 1, 1, KesMeasure::SinglesXml::mostRepetitions))
        .setIsLater();
    return root;
}

double directionOf(const Settings& settings, StageKind kind)
{
    if (kind == FrequencyRate)
        return settings.stages[kind].setting < 0.0 ? -1.0 : 1.0;
    return kind == Undervoltage || kind == Underfrequency ? -1.0 : 1.0;
}

} // namespace VoltageFrequency
