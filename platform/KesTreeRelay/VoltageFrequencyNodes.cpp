#include <KesCommon/UnitText.h>
#include <KesTreeRelay/VoltageFrequencyNodes.h>

#include <KesTreeRelay/Nameplate.h>
#include <KesTreeRelay/RelayNames.h>
#include <KesTreeRelay/detail/Rules.h>

namespace KesTree::VoltageFrequencyNodes {

namespace {

struct Quantity {
    lng::Text unit;
    double value;
    double minimum;
    double maximum;
};

void addSetting(Node& stage, const Quantity& setting, double delay)
{
    stage.add(
        Node::boolean(StageUsed, {"VoltageFrequencyRelay.stageUsed", "Stage used", "Ступень введена"}, true));
    stage.add(Node::number(StageSetting, {"VoltageFrequencyRelay.setting", "Setting", "Уставка"},
                           setting.unit, setting.value, setting.minimum, setting.maximum));
    stage.add(Node::number(StageDelay, {"VoltageFrequencyRelay.delay", "Delay", "Выдержка времени"},
                           lng::Unit::second, delay, 0.0, 600.0));
}

Node& addRatio(Node& stage, double value, double minimum, double maximum)
{
    return stage.add(
        Node::number(StageDropOff, RelayNames::dropOffRatio, lng::Unit::none, value, minimum, maximum));
}

void addDifference(Node& stage)
{
    stage.add(Node::number(
        StageDropOff, {"VoltageFrequencyRelay.dropOffDifference", "Drop-off difference", "Разность возврата"},
        lng::Unit::hertz, 0.05, 0.01, 5.0));
}

void addTolerances(Node& stage, const Quantity& tolerance, double milliseconds)
{
    stage.add(Node::number(
        StageTolerance,
        {"VoltageFrequencyRelay.toleranceOfTheValue", "Tolerance of the value", "Допуск уставки"},
        tolerance.unit, tolerance.value, tolerance.minimum, tolerance.maximum));
    RelayNodes::addTimeTolerances(stage, 1.0, milliseconds);
}

const Quantity voltageTolerance{lng::Unit::percent, 1.0, 0.05, 20.0};
const Quantity hertzTolerance{lng::Unit::hertz, 0.01, 0.001, 1.0};
const Quantity rateTolerance{lng::Unit::percent, 5.0, 0.5, 30.0};

void addRelay(Node& root)
{
    auto& relay = root.add(Node::group(RelayGroup, {"VoltageFrequencyRelay.relay", "Relay", "Реле"}));
    relay.add(Node::number(NominalVoltage, RelayNames::nominalVoltage, lng::Unit::volt, 100.0, 10.0, 500.0));
    relay.add(
        Node::number(NominalFrequency,
                     {"VoltageFrequencyRelay.nominalFrequency", "Nominal frequency", "Номинальная частота"},
                     lng::Unit::hertz, 50.0, 15.0, 400.0));
    relay.add(Node::integer(TripInput, RelayNames::tripInput, lng::Unit::none, 1, 1, 8));
    relay.add(Node::integer(StartInput, RelayNames::startInput, lng::Unit::none, 2, 1, 8));
}

Node& addStage(Node& root, const char* id, lng::Text name)
{
    return root.add(Node::group(id, name));
}

void addVoltages(Node& root)
{
    auto& under =
        addStage(root, Undervoltage,
                 {"VoltageFrequencyRelay.undervoltage", "27 Undervoltage U<", "27 Понижение напряжения U<"});
    addSetting(under, {lng::Unit::volt, 80.0, 1.0, 500.0}, 1.0);
    addRatio(under, 1.05, 1.001, 1.5);
    addTolerances(under, voltageTolerance, 50.0);
    auto& over =
        addStage(root, Overvoltage,
                 {"VoltageFrequencyRelay.overvoltage", "59 Overvoltage U>", "59 Повышение напряжения U>"});
    addSetting(over, {lng::Unit::volt, 115.0, 1.0, 500.0}, 0.5);
    addRatio(over, 0.95, 0.5, 0.999);
    addTolerances(over, voltageTolerance, 50.0);
}

void addFrequencies(Node& root)
{
    auto& under =
        addStage(root, Underfrequency,
                 {"VoltageFrequencyRelay.underfrequency", "81 Underfrequency f<", "81 Понижение частоты f<"});
    addSetting(under, {lng::Unit::hertz, 49.0, 10.0, 400.0}, 0.5);
    addDifference(under);
    addTolerances(under, hertzTolerance, 100.0);
    auto& over =
        addStage(root, Overfrequency,
                 {"VoltageFrequencyRelay.overfrequency", "81 Overfrequency f>", "81 Повышение частоты f>"});
    addSetting(over, {lng::Unit::hertz, 51.0, 10.0, 400.0}, 0.5);
    addDifference(over);
    addTolerances(over, hertzTolerance, 100.0);
    auto& rate = addStage(
        root, FrequencyRate,
        {"VoltageFrequencyRelay.frequencyRate", "81R Rate of change df/dt", "81R Скорость изменения df/dt"});
    addSetting(rate, {lng::Unit::hertzPerSecond, 1.0, 0.05, 20.0}, 0.3);
    rate.add(
        Node::choice(StageDirection, {"VoltageFrequencyRelay.direction", "Direction", "Направление"},
                     {{"VoltageFrequencyRelay.fallingFrequency", "falling frequency", "снижение частоты"},
                      {"VoltageFrequencyRelay.risingFrequency", "rising frequency", "рост частоты"}},
                     FallingFrequency));
    addRatio(rate, 0.9, 0.5, 0.999).setIsLater();
    addTolerances(rate, rateTolerance, 100.0);
}

} // namespace

std::unique_ptr<Node> voltageFrequencyRelay()
{
    auto root = Node::group("voltageFrequency", {"VoltageFrequencyRelay.title", "Voltage and frequency relay",
                                                 "Реле напряжения и частоты"});
    addRelay(*root);
    addVoltages(*root);
    addFrequencies(*root);
    for (const auto& stage : root->getChildren())
        if (auto* used = stage->find(StageUsed))
            for (const auto& value : stage->getChildren())
                if (value.get() != used)
                    value->setUsage([used] { return used->getBoolean(); });
    Nameplate::addTo(*root);
    return root;
}

} // namespace KesTree::VoltageFrequencyNodes
