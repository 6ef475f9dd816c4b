#include <KesTreeRelay/RelayNodes.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesTreeRelay/detail/RelayText.h>
#include <KesTreeRelay/detail/Rules.h>

namespace KesTree::RelayNodes {

namespace {

const TextPair amperes{"A", "А"};
const TextPair seconds{"s", "с"};
const TextPair milliseconds{"ms", "мс"};
const TextPair percent{"%", "%"};

std::vector<TextPair> curves()
{
    return {{"Standard inverse (IEC A)", "Нормально инверсная (МЭК A)"},
            {"Very inverse (IEC B)", "Сильно инверсная (МЭК B)"},
            {"Extremely inverse (IEC C)", "Чрезвычайно инверсная (МЭК C)"},
            {"Long-time inverse", "Длительно инверсная"},
            {"Definite time", "Независимая"}};
}

Kes::Result checkRatio(double setting, double nominal)
{
    if (setting <= MaximumSettingRatio * nominal)
        return true;
    return Kes::Result::failure(Kes::StringHelper::format(lng::TreeRelay::get("Error.settingRatio"),
                                                          Kes::NumberText::show(MaximumSettingRatio)));
}

Kes::Result checkTolerance(double one, double other)
{
    if (one > 0.0 || other > 0.0)
        return true;
    return Kes::Result::failure(lng::TreeRelay::get("Error.noTolerance"));
}

void addCurrents(Node& stage)
{
    auto& nominal = stage.add(
        Node::number(NominalCurrent, {"Nominal current In", "Номинальный ток Iн"}, amperes, 5.0, 0.1, 100.0));
    auto& setting = stage.add(
        Node::number(SettingCurrent, {"Setting current Is", "Ток уставки Is"}, amperes, 5.0, 0.05, 100.0));
    validateTogether(setting, nominal, checkRatio);
}

void addCharacteristic(Node& stage)
{
    auto& multiplier = stage.add(
        Node::number(TimeMultiplier, {"Time multiplier TMS", "Множитель времени TMS"}, {}, 1.0, 0.01, 10.0));
    auto& curve =
        stage.add(Node::choice(Curve, {"Characteristic", "Характеристика"}, curves(), StandardInverse));
    auto& definiteTime =
        stage.add(Node::number(DefiniteTime, {"Definite operate time", "Независимое время срабатывания"},
                               seconds, 1.0, 0.01, 600.0));
    multiplier.setUsage([&curve] { return curve.getChoice() != DefiniteTimeCurve; });
    definiteTime.setUsage([&curve] { return curve.getChoice() == DefiniteTimeCurve; });
}

} // namespace

void addTimeTolerances(Node& stage, double percentValue, double millisecondsValue)
{
    auto& relative = stage.add(Node::number(TolerancePercent,
                                            {"Time tolerance, relative", "Допуск времени, относительный"},
                                            percent, percentValue, 0.0, 100.0));
    auto& absolute = stage.add(Node::number(ToleranceMilliseconds,
                                            {"Time tolerance, absolute", "Допуск времени, абсолютный"},
                                            milliseconds, millisecondsValue, 0.0, 10000.0));
    validateTogether(relative, absolute, checkTolerance);
}

std::unique_ptr<Node> overcurrentStage()
{
    auto stage =
        Node::group("overcurrent", {"Time-overcurrent stage", "Ступень максимальной токовой защиты"});
    addCurrents(*stage);
    addCharacteristic(*stage);
    addTimeTolerances(*stage, 5.0, 30.0);
    return stage;
}

} // namespace KesTree::RelayNodes
