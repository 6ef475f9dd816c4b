#include <Overcurrent/data/RelaySettings.h>

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

} // namespace Overcurrent
