#include <Overcurrent/data/RelaySettings.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace Overcurrent {

namespace Nodes = KesTree::RelayNodes;

namespace {

using Value = KesTree::Node::Value;

Stage readStage(const KesTree::Node& group)
{
    Stage stage;
    stage.isUsed = group.find(Nodes::StageUsed)->getBoolean();
    stage.settingCurrent = group.find(Nodes::StageSetting)->getNumber();
    stage.curve = static_cast<CurveKind>(group.find(Nodes::StageCurve)->getChoice());
    stage.timeMultiplier = group.find(Nodes::StageMultiplier)->getNumber();
    stage.definiteTime = group.find(Nodes::StageTime)->getNumber();
    // The node holds nothing else.
    (void)KesTree::CurveTable::read(group.find(Nodes::StageTable)->getText(), stage.table);
    stage.direction = static_cast<DirectionKind>(group.find(Nodes::StageDirection)->getChoice());
    return stage;
}

Value whole(auto value)
{
    return static_cast<long long>(value);
}

using Values = std::vector<std::pair<std::string, Value>>;

void addStage(Values& values, const std::string& group, const Stage& stage)
{
    const std::pair<const char*, Value> own[] = {
        {Nodes::StageUsed, stage.isUsed},
        {Nodes::StageSetting, stage.settingCurrent},
        {Nodes::StageCurve, whole(stage.curve)},
        {Nodes::StageMultiplier, stage.timeMultiplier},
        {Nodes::StageTime, stage.definiteTime},
        {Nodes::StageTable, KesTree::CurveTable::write(stage.table)},
        {Nodes::StageDirection, whole(stage.direction)},
    };
    for (const auto& [id, value] : own)
        values.emplace_back(group + "/" + id, value);
}

} // namespace

bool RelaySettings::isDirectional() const
{
    return std::any_of(stages.begin(), stages.end(), [](const Stage& stage) {
        return stage.isUsed && stage.direction != DirectionKind::NonDirectional;
    });
}

RelaySettings RelaySettings::fromNode(const KesTree::Node& relay)
{
    const auto number = [&](const char* path) { return relay.find(path)->getNumber(); };
    const auto input = [&](const char* path) {
        return static_cast<unsigned>(relay.find(path)->getInteger());
    };
    RelaySettings settings;
    settings.nominalCurrent = number(Nodes::NominalCurrent);
    for (const auto stage : allStages)
        settings[stage] = readStage(*relay.find(Nodes::OvercurrentStages[static_cast<std::size_t>(stage)]));
    settings.characteristicAngle = number(Nodes::CharacteristicAngle);
    settings.nominalVoltage = number(Nodes::NominalVoltage);
    settings.toleranceKind = static_cast<TimeToleranceKind>(relay.find(Nodes::ToleranceKind)->getChoice());
    settings.tolerancePercent = number(Nodes::TolerancePercent);
    settings.toleranceMilliseconds = number(Nodes::ToleranceMilliseconds);
    settings.currentTolerancePercent = number(Nodes::CurrentTolerance);
    settings.tripInput = input(Nodes::TripInput);
    settings.rampContact = static_cast<RampContactKind>(relay.find(Nodes::RampContact)->getChoice());
    settings.startInput = input(Nodes::StartInput);
    settings.debounceMilliseconds = number(Nodes::Debounce);
    settings.resetTime = number(Nodes::ResetTime);
    settings.continuousWithstand = number(Nodes::ContinuousWithstand);
    settings.tenSecondWithstand = number(Nodes::TenSecondWithstand);
    settings.oneSecondWithstand = number(Nodes::OneSecondWithstand);
    return settings;
}

bool RelaySettings::putInto(KesTree::Node& relay) const
{
    Values values{
        {Nodes::NominalCurrent, nominalCurrent},
        {Nodes::CharacteristicAngle, characteristicAngle},
        {Nodes::NominalVoltage, nominalVoltage},
        {Nodes::ToleranceKind, whole(toleranceKind)},
        {Nodes::TolerancePercent, tolerancePercent},
        {Nodes::ToleranceMilliseconds, toleranceMilliseconds},
        {Nodes::CurrentTolerance, currentTolerancePercent},
        // Without a start contact the inputs may be the same for a moment: they may have to be exchanged.
        {Nodes::RampContact, whole(RampContactKind::NoRamps)},
        {Nodes::TripInput, whole(tripInput)},
        {Nodes::StartInput, whole(startInput)},
        {Nodes::RampContact, whole(rampContact)},
        {Nodes::Debounce, debounceMilliseconds},
        {Nodes::ResetTime, resetTime},
        {Nodes::ContinuousWithstand, continuousWithstand},
        {Nodes::TenSecondWithstand, tenSecondWithstand},
        {Nodes::OneSecondWithstand, oneSecondWithstand}};
    for (const auto stage : allStages)
        addStage(values, Nodes::OvercurrentStages[static_cast<std::size_t>(stage)], (*this)[stage]);
    // Values with a rule between them may be accepted only after another one.
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round)
        if (std::count_if(values.begin(), values.end(), [&relay](const auto& value) {
                return !relay.find(value.first)->setValue(value.second);
            }) == 0)
            return true;
    return false;
}

} // namespace Overcurrent
