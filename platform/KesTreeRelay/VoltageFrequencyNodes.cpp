#include <KesTreeRelay/VoltageFrequencyNodes.h>

#include <KesTreeRelay/Nameplate.h>
#include <KesTreeRelay/detail/Rules.h>

namespace KesTree::VoltageFrequencyNodes {

namespace {

const TextPair noUnit{};
const TextPair volts{"V", "В"};
const TextPair hertz{"Hz", "Гц"};
const TextPair hertzPerSecond{"Hz/s", "Гц/с"};
const TextPair seconds{"s", "с"};
const TextPair percent{"%", "%"};

struct Quantity {
    TextPair unit;
    double value;
    double minimum;
    double maximum;
};

void addSetting(Node& stage, const Quantity& setting, double delay)
{
    stage.add(Node::boolean(StageUsed, {"Stage used", "Ступень введена"}, true));
    stage.add(Node::number(StageSetting, {"Setting", "Уставка"}, setting.unit, setting.value, setting.minimum,
                           setting.maximum));
    stage.add(Node::number(StageDelay, {"Delay", "Выдержка времени"}, seconds, delay, 0.0, 600.0));
}

Node& addRatio(Node& stage, double value, double minimum, double maximum)
{
    return stage.add(Node::number(StageDropOff, {"Drop-off ratio", "Коэффициент возврата"}, noUnit, value,
                                  minimum, maximum));
}

void addDifference(Node& stage)
{
    stage.add(
        Node::number(StageDropOff, {"Drop-off difference", "Разность возврата"}, hertz, 0.05, 0.01, 5.0));
}

void addTolerances(Node& stage, const Quantity& tolerance, double milliseconds)
{
    stage.add(Node::number(StageTolerance, {"Tolerance of the value", "Допуск уставки"}, tolerance.unit,
                           tolerance.value, tolerance.minimum, tolerance.maximum));
    RelayNodes::addTimeTolerances(stage, 1.0, milliseconds);
}

const Quantity voltageTolerance{percent, 1.0, 0.05, 20.0};
const Quantity hertzTolerance{hertz, 0.01, 0.001, 1.0};
const Quantity rateTolerance{percent, 5.0, 0.5, 30.0};

void addRelay(Node& root)
{
    auto& relay = root.add(Node::group(RelayGroup, {"Relay", "Реле"}));
    relay.add(Node::number(NominalVoltage,
                           {"Nominal voltage (phase to phase)", "Номинальное напряжение (междуфазное)"},
                           volts, 100.0, 10.0, 500.0));
    relay.add(Node::number(NominalFrequency, {"Nominal frequency", "Номинальная частота"}, hertz, 50.0, 15.0,
                           400.0));
    relay.add(
        Node::integer(TripInput, {"Input of the trip contact", "Вход контакта отключения"}, noUnit, 1, 1, 8));
    relay.add(
        Node::integer(StartInput, {"Input of the start contact", "Вход контакта пуска"}, noUnit, 2, 1, 8));
}

Node& addStage(Node& root, const char* id, TextPair name)
{
    return root.add(Node::group(id, std::move(name)));
}

void addVoltages(Node& root)
{
    auto& under = addStage(root, Undervoltage, {"27 Undervoltage U<", "27 Понижение напряжения U<"});
    addSetting(under, {volts, 80.0, 1.0, 500.0}, 1.0);
    addRatio(under, 1.05, 1.001, 1.5);
    addTolerances(under, voltageTolerance, 50.0);
    auto& over = addStage(root, Overvoltage, {"59 Overvoltage U>", "59 Повышение напряжения U>"});
    addSetting(over, {volts, 115.0, 1.0, 500.0}, 0.5);
    addRatio(over, 0.95, 0.5, 0.999);
    addTolerances(over, voltageTolerance, 50.0);
}

void addFrequencies(Node& root)
{
    auto& under = addStage(root, Underfrequency, {"81 Underfrequency f<", "81 Понижение частоты f<"});
    addSetting(under, {hertz, 49.0, 10.0, 400.0}, 0.5);
    addDifference(under);
    addTolerances(under, hertzTolerance, 100.0);
    auto& over = addStage(root, Overfrequency, {"81 Overfrequency f>", "81 Повышение частоты f>"});
    addSetting(over, {hertz, 51.0, 10.0, 400.0}, 0.5);
    addDifference(over);
    addTolerances(over, hertzTolerance, 100.0);
    auto& rate = addStage(root, FrequencyRate, {"81R Rate of change df/dt", "81R Скорость изменения df/dt"});
    addSetting(rate, {hertzPerSecond, 1.0, 0.05, 20.0}, 0.3);
    rate.add(Node::choice(StageDirection, {"Direction", "Направление"},
                          {{"falling frequency", "снижение частоты"}, {"rising frequency", "рост частоты"}},
                          FallingFrequency));
    addRatio(rate, 0.9, 0.5, 0.999).setIsLater();
    addTolerances(rate, rateTolerance, 100.0);
}

} // namespace

std::unique_ptr<Node> voltageFrequencyRelay()
{
    auto root = Node::group("voltageFrequency", {"Voltage and frequency relay", "Реле напряжения и частоты"});
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
