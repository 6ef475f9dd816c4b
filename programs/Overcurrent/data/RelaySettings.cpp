#include <Overcurrent/data/RelaySettings.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Overcurrent {

namespace Nodes = KesTree::RelayNodes;

RelaySettings RelaySettings::fromNode(const KesTree::Node& stage)
{
    const auto number = [&](const char* id) { return stage.find(id)->getNumber(); };
    RelaySettings settings;
    settings.nominalCurrent = number(Nodes::NominalCurrent);
    settings.settingCurrent = number(Nodes::SettingCurrent);
    settings.timeMultiplier = number(Nodes::TimeMultiplier);
    settings.curve = static_cast<CurveKind>(stage.find(Nodes::Curve)->getChoice());
    settings.definiteTime = number(Nodes::DefiniteTime);
    settings.tolerancePercent = number(Nodes::TolerancePercent);
    settings.toleranceMilliseconds = number(Nodes::ToleranceMilliseconds);
    return settings;
}

bool RelaySettings::putInto(KesTree::Node& stage) const
{
    const std::pair<const char*, KesTree::Node::Value> values[] = {
        {Nodes::NominalCurrent, nominalCurrent},
        {Nodes::SettingCurrent, settingCurrent},
        {Nodes::TimeMultiplier, timeMultiplier},
        {Nodes::Curve, static_cast<long long>(curve)},
        {Nodes::DefiniteTime, definiteTime},
        {Nodes::TolerancePercent, tolerancePercent},
        {Nodes::ToleranceMilliseconds, toleranceMilliseconds}};
    return std::all_of(std::begin(values), std::end(values), [&stage](const auto& value) {
        return static_cast<bool>(stage.find(value.first)->setValue(value.second));
    });
}

} // namespace Overcurrent
