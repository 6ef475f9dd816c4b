#include <KesTreeRelay/RelayNodes.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesTreeRelay/Nameplate.h>
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
            {"Long-time inverse (BS 142)", "Длительно инверсная (BS 142)"},
            {"Definite time", "Независимая"},
            {"Moderately inverse (IEEE)", "Умеренно инверсная (IEEE)"},
            {"Very inverse (IEEE)", "Сильно инверсная (IEEE)"},
            {"Extremely inverse (IEEE)", "Чрезвычайно инверсная (IEEE)"}};
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

Kes::Result checkOrder(double smaller, double larger)
{
    if (smaller < larger)
        return true;
    return Kes::Result::failure(lng::TreeRelay::get("Error.withstandOrder"));
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

void addTolerances(Node& stage)
{
    stage.add(Node::choice(ToleranceKind, {"Time tolerance", "Допуск времени"},
                           {{"Same at all currents", "Одинаковый при всех токах"},
                            {"Assigned error (IEC 60255-151)", "Класс погрешности (МЭК 60255-151)"}},
                           SameTolerance));
    addTimeTolerances(stage, 5.0, 30.0);
    stage.add(Node::number(CurrentTolerance, {"Current tolerance", "Допуск тока"}, percent, 2.0, 0.0, 20.0));
}

constexpr long long mostInputs = 64;

void addContacts(Node& stage)
{
    auto& group = stage.add(Node::group("contacts", {"Contacts", "Контакты"}));
    auto& trip = group.add(Node::integer(
        idOf(TripInput), {"Input of the trip contact", "Вход контакта отключения"}, {}, 1, 1, mostInputs));
    auto& kind =
        group.add(Node::choice(idOf(RampContact), {"Pick-up and drop-off", "Токи срабатывания и возврата"},
                               {{"By the start contact", "По пусковому контакту"},
                                {"By the trip contact", "По контакту отключения"},
                                {"Not measured", "Не измеряются"}},
                               ByStartContact));
    auto& start = group.add(Node::integer(
        idOf(StartInput), {"Input of the start contact", "Вход пускового контакта"}, {}, 2, 1, mostInputs));
    group.add(Node::number(idOf(Debounce), {"Debounce time", "Время подавления дребезга"}, milliseconds, 5.0,
                           0.0, 100.0));
    group.add(Node::number(idOf(ResetTime), {"Reset time", "Время возврата"}, seconds, 0.5, 0.0, 60.0));
    const auto hasStart = [&kind] { return kind.getChoice() == ByStartContact; };
    start.setUsage(hasStart);
    const auto differ = [](long long one, long long other, bool areBothUsed) {
        return one != other || !areBothUsed ? Kes::Result(true)
                                            : Kes::Result::failure(lng::TreeRelay::get("Error.sameInput"));
    };
    trip.setValidation([=, &start](const Node::Value& value) {
        return differ(std::get<long long>(value), start.getInteger(), hasStart());
    });
    start.setValidation([=, &trip](const Node::Value& value) {
        return differ(trip.getInteger(), std::get<long long>(value), hasStart());
    });
    kind.setValidation([=, &trip, &start](const Node::Value& value) {
        return differ(trip.getInteger(), start.getInteger(), std::get<long long>(value) == ByStartContact);
    });
}

void addCurrentInput(Node& stage)
{
    auto& group = stage.add(Node::group("currentInput", {"Current input", "Токовый вход"}));
    const auto add = [&group](const char* path, TextPair name, double value) -> Node& {
        return group.add(Node::number(idOf(path), std::move(name), {"x In", "x Iн"}, value, 0.5, 1000.0));
    };
    auto& continuous = add(ContinuousWithstand, {"Withstands continuously", "Допустимо длительно"}, 4.0);
    auto& ten = add(TenSecondWithstand, {"Withstands for 10 s", "Допустимо в течение 10 с"}, 30.0);
    auto& one = add(OneSecondWithstand, {"Withstands for 1 s", "Допустимо в течение 1 с"}, 100.0);
    continuous.setValidation(
        [&ten](const Node::Value& value) { return checkOrder(std::get<double>(value), ten.getNumber()); });
    ten.setValidation([&continuous, &one](const Node::Value& value) {
        auto result = checkOrder(continuous.getNumber(), std::get<double>(value));
        return result ? checkOrder(std::get<double>(value), one.getNumber()) : result;
    });
    one.setValidation(
        [&ten](const Node::Value& value) { return checkOrder(ten.getNumber(), std::get<double>(value)); });
}

} // namespace

std::string idOf(const char* path)
{
    const std::string text = path;
    return text.substr(text.find('/') + 1);
}

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
    addTolerances(*stage);
    addContacts(*stage);
    addCurrentInput(*stage);
    Nameplate::addTo(*stage);
    return stage;
}

} // namespace KesTree::RelayNodes
