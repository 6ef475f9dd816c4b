#include <Overcurrent/data/RelaySettings.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Overcurrent {

namespace Nodes = KesTree::RelayNodes;

RelaySettings RelaySettings::fromNode(const KesTree::Node& stage)
{
    const auto number = [&](const char* path) { return stage.find(path)->getNumber(); };
    const auto input = [&](const char* path) {
        return static_cast<unsigned>(stage.find(path)->getInteger());
    };
    RelaySettings settings;
    settings.nominalCurrent = number(Nodes::NominalCurrent);
    settings.settingCurrent = number(Nodes::SettingCurrent);
    settings.timeMultiplier = number(Nodes::TimeMultiplier);
    settings.curve = static_cast<CurveKind>(stage.find(Nodes::Curve)->getChoice());
    settings.definiteTime = number(Nodes::DefiniteTime);
    settings.toleranceKind = static_cast<TimeToleranceKind>(stage.find(Nodes::ToleranceKind)->getChoice());
    settings.tolerancePercent = number(Nodes::TolerancePercent);
    settings.toleranceMilliseconds = number(Nodes::ToleranceMilliseconds);
    settings.currentTolerancePercent = number(Nodes::CurrentTolerance);
    settings.tripInput = input(Nodes::TripInput);
    settings.rampContact = static_cast<RampContactKind>(stage.find(Nodes::RampContact)->getChoice());
    settings.startInput = input(Nodes::StartInput);
    settings.debounceMilliseconds = number(Nodes::Debounce);
    settings.resetTime = number(Nodes::ResetTime);
    settings.continuousWithstand = number(Nodes::ContinuousWithstand);
    settings.tenSecondWithstand = number(Nodes::TenSecondWithstand);
    settings.oneSecondWithstand = number(Nodes::OneSecondWithstand);
    return settings;
}

bool RelaySettings::putInto(KesTree::Node& stage) const
{
    const auto whole = [](auto value) { return KesTree::Node::Value(static_cast<long long>(value)); };
    const std::pair<const char*, KesTree::Node::Value> values[] = {
        {Nodes::NominalCurrent, nominalCurrent},
        {Nodes::SettingCurrent, settingCurrent},
        {Nodes::TimeMultiplier, timeMultiplier},
        {Nodes::Curve, whole(curve)},
        {Nodes::DefiniteTime, definiteTime},
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
    // Values with a rule between them may be accepted only after another one.
    constexpr int rounds = 3;
    for (int round = 0; round < rounds; ++round)
        if (std::count_if(std::begin(values), std::end(values), [&stage](const auto& value) {
                return !stage.find(value.first)->setValue(value.second);
            }) == 0)
            return true;
    return false;
}

} // namespace Overcurrent
