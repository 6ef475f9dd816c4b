#include <KesCommon/UnitText.h>
#include <KesTreeRelay/RelayNodes.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesTreeRelay/CurveTable.h>
#include <KesTreeRelay/Nameplate.h>
#include <KesTreeRelay/RelayNames.h>
#include <KesTreeRelay/detail/RelayText.h>
#include <KesTreeRelay/detail/Rules.h>

#include <algorithm>
#include <string>
#include <vector>

namespace KesTree::RelayNodes {

namespace {

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
    lng::Text name;
    bool isUsed;
    double setting;
    double leastSetting;
    OvercurrentCurve curve;
    double definiteTime;
};

/// In the order of `OvercurrentStages`.
std::vector<StageDefaults> stageDefaults()
{
    return {{{"Relay.stage1", "Stage I>", "Ступень I>"}, true, 5.0, 0.05, StandardInverse, 1.0},
            {{"Relay.stage2", "Stage I>>", "Ступень I>>"}, false, 25.0, 0.05, DefiniteTimeCurve, 0.3},
            {{"Relay.stage3", "Stage I>>>", "Ступень I>>>"}, false, 50.0, 0.05, DefiniteTimeCurve, 0.05},
            {{"Relay.residualStage", "Residual stage I0>", "Ступень 3I0>"},
             false,
             1.0,
             0.01,
             DefiniteTimeCurve,
             0.5}};
}

void addTable(Node& stage)
{
    auto& table = stage.add(Node::text(
        StageTable,
        {"Relay.tablePairs", "Table, multiple of Is : seconds; …", "Таблица, кратность Iуст : с; …"},
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
    auto& used = stage.add(Node::boolean(StageUsed, {"Relay.inUse", "In use", "Введена"}, defaults.isUsed));
    auto& setting = stage.add(
        Node::number(StageSetting, {"Relay.settingCurrent", "Setting current Is", "Ток уставки Iуст"},
                     lng::Unit::ampere, defaults.setting, defaults.leastSetting, 100.0));
    stage.add(Node::choice(StageCurve, {"Relay.characteristic", "Characteristic", "Характеристика"},
                           {std::begin(RelayNames::curves), std::end(RelayNames::curves)}, defaults.curve));
    stage.add(Node::number(StageMultiplier,
                           {"Relay.timeMultiplier", "Time multiplier TMS", "Множитель времени TMS"}, {}, 1.0,
                           0.01, 10.0));
    stage.add(Node::number(StageTime,
                           {"Relay.definiteOperateTime", "Definite operate time",
                            "Выдержка времени (независимая характеристика)"},
                           lng::Unit::second, defaults.definiteTime, 0.01, 600.0));
    addTable(stage);
    auto& direction =
        stage.add(Node::choice(StageDirection, {"Relay.direction", "Direction", "Направленность"},
                               {{"Relay.nonDirectional", "Non-directional", "Ненаправленная"},
                                {"Relay.forward", "Forward", "Вперёд"},
                                {"Relay.reverse", "Reverse", "Назад"}},
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
        Node::number(NominalCurrent, RelayNames::nominalCurrent, lng::Unit::ampere, 5.0, 0.1, 100.0));
    AllStages stages;
    for (const auto& defaults : stageDefaults())
        stages.push_back(addStage(relay, OvercurrentStages[stages.size()], defaults));
    setStageRules(nominal, stages);
    return stages;
}

void addTolerances(Node& stage)
{
    stage.add(Node::choice(
        ToleranceKind, RelayNames::timeTolerance,
        {{"Relay.sameAtAllCurrents", "Same at all currents", "Одинаковый при всех токах"},
         {"Relay.assignedError", "Assigned error (IEC 60255-151)", "Класс погрешности (МЭК 60255-151)"}},
        SameTolerance));
    addTimeTolerances(stage, 5.0, 30.0);
    stage.add(
        Node::number(CurrentTolerance, RelayNames::currentTolerance, lng::Unit::percent, 2.0, 0.0, 20.0));
}

constexpr long long mostInputs = 64;

void addPolarisation(Node& relay, const AllStages& stages)
{
    auto& group = relay.add(Node::group(
        "polarisation", {"Relay.directionalElements", "Directional elements", "Направленные органы"}));
    auto& angle = group.add(Node::number(
        idOf(CharacteristicAngle),
        {"Relay.characteristicAngle", "Characteristic angle", "Угол максимальной чувствительности"},
        lng::Unit::degree, -45.0, -180.0, 180.0));
    auto& voltage = group.add(
        Node::number(idOf(NominalVoltage), RelayNames::nominalVoltage, lng::Unit::volt, 100.0, 10.0, 500.0));
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
    auto& group = stage.add(Node::group("contacts", RelayNames::contacts));
    auto& trip = group.add(Node::integer(idOf(TripInput), RelayNames::tripInput, {}, 1, 1, mostInputs));
    auto& kind = group.add(Node::choice(
        idOf(RampContact), {"Relay.rampContact", "Pick-up and drop-off", "Токи срабатывания и возврата"},
        {{"Relay.byTheStartContact", "By the start contact", "По пусковому контакту"},
         {"Relay.byTheTripContact", "By the trip contact", "По контакту отключения"},
         {"Relay.notMeasured", "Not measured", "Не измеряются"}},
        ByStartContact));
    auto& start = group.add(Node::integer(idOf(StartInput), RelayNames::startInput, {}, 2, 1, mostInputs));
    group.add(Node::number(idOf(Debounce), RelayNames::debounce, lng::Unit::millisecond, 5.0, 0.0, 100.0));
    group.add(Node::number(idOf(ResetTime), RelayNames::resetTime, lng::Unit::second, 0.5, 0.0, 60.0));
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
    auto& group =
        stage.add(Node::group("currentInput", {"Relay.currentInput", "Current input", "Токовый вход"}));
    const auto add = [&group](const char* path, lng::Text name, double value) -> Node& {
        return group.add(Node::number(idOf(path), name, lng::Unit::timesNominal, value, 0.5, 1000.0));
    };
    auto& continuous =
        add(ContinuousWithstand,
            {"Relay.continuousWithstand", "Withstands continuously", "Допустимо длительно"}, 4.0);
    auto& ten = add(TenSecondWithstand,
                    {"Relay.tenSecondWithstand", "Withstands for 10 s", "Допустимо в течение 10 с"}, 30.0);
    auto& one = add(OneSecondWithstand,
                    {"Relay.oneSecondWithstand", "Withstands for 1 s", "Допустимо в течение 1 с"}, 100.0);
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
    auto& relative = stage.add(Node::number(
        TolerancePercent,
        {"Relay.timeToleranceRelative", "Time tolerance, relative", "Допуск времени, относительный"},
        lng::Unit::percent, percentValue, 0.0, 100.0));
    auto& absolute = stage.add(Node::number(
        ToleranceMilliseconds,
        {"Relay.timeToleranceAbsolute", "Time tolerance, absolute", "Допуск времени, абсолютный"},
        lng::Unit::millisecond, millisecondsValue, 0.0, 10000.0));
    validateTogether(relative, absolute, checkTolerance);
}

std::unique_ptr<Node> overcurrentStage()
{
    auto stage = Node::group("overcurrent",
                             {"Relay.overcurrentRelay", "Overcurrent relay", "Реле максимального тока"});
    const auto stages = addStages(*stage);
    addTolerances(*stage);
    addPolarisation(*stage, stages);
    addContacts(*stage);
    addCurrentInput(*stage);
    Nameplate::addTo(*stage);
    return stage;
}

} // namespace KesTree::RelayNodes
