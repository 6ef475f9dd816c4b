#include <KesTreeRelay/RelayNodes.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesTreeRelay/CurveTable.h>
#include <KesTreeRelay/Nameplate.h>
#include <KesTreeRelay/detail/RelayText.h>
#include <KesTreeRelay/detail/Rules.h>

#include <algorithm>
#include <string>
#include <vector>

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
            {"Extremely inverse (IEEE)", "Чрезвычайно инверсная (IEEE)"},
            {"As a table", "Таблица"}};
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

/// The nodes that a rule between stages looks at.
struct StageNodes {
    Node* used;
    Node* setting;
    Node* direction;
};
using AllStages = std::vector<StageNodes>;

/// What a stage is at first, and how small its setting may be.
struct StageDefaults {
    TextPair name;
    bool isUsed;
    double setting;
    double leastSetting;
    OvercurrentCurve curve;
    double definiteTime;
};

/// In the order of `OvercurrentStages`.
std::vector<StageDefaults> stageDefaults()
{
    return {{{"Stage I>", "Ступень I>"}, true, 5.0, 0.05, StandardInverse, 1.0},
            {{"Stage I>>", "Ступень I>>"}, false, 25.0, 0.05, DefiniteTimeCurve, 0.3},
            {{"Stage I>>>", "Ступень I>>>"}, false, 50.0, 0.05, DefiniteTimeCurve, 0.05},
            {{"Residual stage I0>", "Ступень 3I0>"}, false, 1.0, 0.01, DefiniteTimeCurve, 0.5}};
}

void addTable(Node& stage)
{
    auto& table = stage.add(
        Node::text(StageTable, {"Table, multiple of Is : seconds; ...", "Таблица, кратность Iуст : с; ..."},
                   "2:10; 5:3.5; 10:1.2"));
    table.setValidation([](const Node::Value& value) {
        CurveTable::Pairs pairs;
        return CurveTable::read(std::get<std::string>(value), pairs);
    });
    const auto rewrite = [](std::string (*how)(const CurveTable::Pairs&)) {
        return [how](const std::string& text) {
            CurveTable::Pairs pairs;
            return CurveTable::read(text, pairs) ? how(pairs) : text;
        };
    };
    table.setNotation(rewrite(CurveTable::show), rewrite(CurveTable::write));
}

/// Which values of a stage play a part.
void setUsages(Node& stage)
{
    const auto* used = stage.find(StageUsed);
    const auto* curve = stage.find(StageCurve);
    stage.setUsage([used] { return used->getBoolean(); });
    const auto use = [&](const char* id, auto needs) {
        stage.find(id)->setUsage([=] { return used->getBoolean() && needs(curve->getChoice()); });
    };
    for (const char* id : {StageSetting, StageCurve, StageDirection})
        use(id, [](std::size_t) { return true; });
    use(StageMultiplier, [](std::size_t kind) { return kind != DefiniteTimeCurve && kind != TableCurve; });
    use(StageTime, [](std::size_t kind) { return kind == DefiniteTimeCurve; });
    use(StageTable, [](std::size_t kind) { return kind == TableCurve; });
}

StageNodes addStage(Node& relay, const char* id, const StageDefaults& defaults)
{
    auto& stage = relay.add(Node::group(id, defaults.name));
    auto& used = stage.add(Node::boolean(StageUsed, {"In use", "Введена"}, defaults.isUsed));
    auto& setting = stage.add(Node::number(StageSetting, {"Setting current Is", "Ток уставки Iуст"}, amperes,
                                           defaults.setting, defaults.leastSetting, 100.0));
    stage.add(Node::choice(StageCurve, {"Characteristic", "Характеристика"}, curves(), defaults.curve));
    stage.add(
        Node::number(StageMultiplier, {"Time multiplier TMS", "Множитель времени TMS"}, {}, 1.0, 0.01, 10.0));
    stage.add(Node::number(StageTime, {"Definite operate time", "Независимое время срабатывания"}, seconds,
                           defaults.definiteTime, 0.01, 600.0));
    addTable(stage);
    auto& direction = stage.add(
        Node::choice(StageDirection, {"Direction", "Направленность"},
                     {{"Non-directional", "Ненаправленная"}, {"Forward", "Вперёд"}, {"Reverse", "Назад"}},
                     NonDirectional));
    setUsages(stage);
    return {&used, &setting, &direction};
}

/// The rules of a stage with the nominal current and with the other stages.
void setStageRules(Node& nominal, const AllStages& stages)
{
    for (const auto& stage : stages) {
        stage.setting->setValidation([stage, &nominal](const Node::Value& value) {
            return stage.used->getBoolean() ? checkRatio(std::get<double>(value), nominal.getNumber())
                                            : Kes::Result(true);
        });
        stage.used->setValidation([stage, stages, &nominal](const Node::Value& value) {
            if (std::get<bool>(value))
                return checkRatio(stage.setting->getNumber(), nominal.getNumber());
            const bool isOther = std::any_of(stages.begin(), stages.end(), [&](const StageNodes& other) {
                return other.used != stage.used && other.used->getBoolean();
            });
            return isOther ? Kes::Result(true) : Kes::Result::failure(lng::TreeRelay::get("Error.noStage"));
        });
    }
    nominal.setValidation([stages](const Node::Value& value) {
        Kes::Result result = true;
        for (const auto& stage : stages)
            if (result && stage.used->getBoolean())
                result = checkRatio(stage.setting->getNumber(), std::get<double>(value));
        return result;
    });
}

AllStages addStages(Node& relay)
{
    auto& nominal = relay.add(
        Node::number(NominalCurrent, {"Nominal current In", "Номинальный ток Iн"}, amperes, 5.0, 0.1, 100.0));
    AllStages stages;
    for (const auto& defaults : stageDefaults())
        stages.push_back(addStage(relay, OvercurrentStages[stages.size()], defaults));
    setStageRules(nominal, stages);
    return stages;
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

void addPolarisation(Node& relay, const AllStages& stages)
{
    auto& group = relay.add(Node::group("polarisation", {"Directional elements", "Направленные органы"}));
    auto& angle = group.add(Node::number(idOf(CharacteristicAngle),
                                         {"Characteristic angle", "Угол максимальной чувствительности"},
                                         {"°", "°"}, -45.0, -180.0, 180.0));
    auto& voltage = group.add(Node::number(
        idOf(NominalVoltage), {"Nominal voltage (phase to phase)", "Номинальное напряжение (междуфазное)"},
        {"V", "В"}, 100.0, 10.0, 500.0));
    const auto isDirectional = [stages] {
        return std::any_of(stages.begin(), stages.end(), [](const StageNodes& stage) {
            return stage.used->getBoolean() && stage.direction->getChoice() != NonDirectional;
        });
    };
    group.setUsage(isDirectional);
    angle.setUsage(isDirectional);
    voltage.setUsage(isDirectional);
}

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
    auto stage = Node::group("overcurrent", {"Overcurrent relay", "Реле максимального тока"});
    const auto stages = addStages(*stage);
    addTolerances(*stage);
    addPolarisation(*stage, stages);
    addContacts(*stage);
    addCurrentInput(*stage);
    Nameplate::addTo(*stage);
    return stage;
}

} // namespace KesTree::RelayNodes
