#include <KesDriver/simulated/relays/RelayCatalog.h>

#include <KesDriver/detail/Refusing.h>
#include <KesDriver/net/FieldText.h>
#include <KesDriver/simulated/relays/OvercurrentRelay.h>
#include <KesDriver/simulated/relays/VoltageFrequencyRelay.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>

namespace KesDriver::RelayCatalog {

namespace {

using Relay = std::shared_ptr<ISimulatedTestObject>;
using Settings = std::vector<std::string>;

/// A setting of a kind of relay: its name, and how its value gets into the settings; false for a value that
/// is wrong.
template <typename Values>
struct Setting {
    const char* name;
    bool (*set)(Values& values, std::string_view text);
};

template <typename Values>
std::string listNames(std::span<const Setting<Values>> known)
{
    std::string names;
    for (const auto& setting : known)
        names += (names.empty() ? "" : ", ") + std::string(setting.name);
    return names;
}

template <typename Values>
Kes::Result readSettings(const Settings& texts, std::span<const Setting<Values>> known, Values& values)
{
    for (const auto& text : texts) {
        const auto end = std::min(text.find('='), text.size());
        const auto found = std::find_if(known.begin(), known.end(), [&](const auto& setting) {
            return text.compare(0, end, setting.name) == 0;
        });
        if (found == known.end())
            return refuse("Wire.setting", text, listNames(known));
        if (end == text.size() || !found->set(values, std::string_view(text).substr(end + 1)))
            return refuse("Wire.value", text);
    }
    return true;
}

constexpr double mostOfAnything = 1e6;

bool setPositive(double& target, std::string_view text)
{
    const auto value = FieldText::readNumber(text);
    if (!value || *value <= 0.0 || *value > mostOfAnything)
        return false;
    target = *value;
    return true;
}

bool setInput(unsigned& target, std::string_view text)
{
    constexpr std::size_t most = 1000;
    const auto value = FieldText::readCount(text, most);
    if (!value || *value == 0)
        return false;
    target = static_cast<unsigned>(*value);
    return true;
}

using Overcurrent = OvercurrentRelay::Settings;

bool setCurve(Overcurrent& values, std::string_view text)
{
    constexpr std::string_view names[] = {"SI", "VI", "EI", "LTI", "DT", "IEEE-MI", "IEEE-VI", "IEEE-EI"};
    const auto found = std::find(std::begin(names), std::end(names), text);
    if (found == std::end(names))
        return false;
    values.curve = static_cast<OvercurrentRelay::Curve>(found - std::begin(names));
    return true;
}

constexpr Setting<Overcurrent> overcurrentSettings[] = {
    {"pickup", [](Overcurrent& to, std::string_view text) { return setPositive(to.settingCurrent, text); }},
    {"tms", [](Overcurrent& to, std::string_view text) { return setPositive(to.timeMultiplier, text); }},
    {"curve", setCurve},
    {"time", [](Overcurrent& to, std::string_view text) { return setPositive(to.definiteTime, text); }},
    {"trip", [](Overcurrent& to, std::string_view text) { return setInput(to.tripInput, text); }},
    {"start", [](Overcurrent& to, std::string_view text) { return setInput(to.startInput, text); }},
};

Kes::Result makeOvercurrent(const Settings& settings, Relay& relay)
{
    Overcurrent values;
    auto result = readSettings(settings, std::span<const Setting<Overcurrent>>(overcurrentSettings), values);
    if (result)
        relay = std::make_shared<OvercurrentRelay>(values);
    return result;
}

using VoltageFrequency = VoltageFrequencyRelay::Settings;

/// Zero switches the stage off; only a rate may lie below zero.
template <VoltageFrequencyRelay::Kind kind>
bool setStage(VoltageFrequency& values, std::string_view text)
{
    const auto value = FieldText::readNumber(text);
    if (!value || std::fabs(*value) > mostOfAnything ||
        (*value < 0.0 && kind != VoltageFrequencyRelay::FrequencyRate))
        return false;
    values.stages[kind].isUsed = *value != 0.0;
    values.stages[kind].setting = *value;
    return true;
}

template <VoltageFrequencyRelay::Kind kind>
bool setStageTime(VoltageFrequency& values, std::string_view text)
{
    return setPositive(values.stages[kind].delay, text);
}

constexpr Setting<VoltageFrequency> voltageFrequencySettings[] = {
    {"nominal",
     [](VoltageFrequency& to, std::string_view text) { return setPositive(to.nominalVoltage, text); }},
    {"U<", setStage<VoltageFrequencyRelay::Undervoltage>},
    {"tU<", setStageTime<VoltageFrequencyRelay::Undervoltage>},
    {"U>", setStage<VoltageFrequencyRelay::Overvoltage>},
    {"tU>", setStageTime<VoltageFrequencyRelay::Overvoltage>},
    {"f<", setStage<VoltageFrequencyRelay::Underfrequency>},
    {"tf<", setStageTime<VoltageFrequencyRelay::Underfrequency>},
    {"f>", setStage<VoltageFrequencyRelay::Overfrequency>},
    {"tf>", setStageTime<VoltageFrequencyRelay::Overfrequency>},
    {"rate", setStage<VoltageFrequencyRelay::FrequencyRate>},
    {"trate", setStageTime<VoltageFrequencyRelay::FrequencyRate>},
    {"trip", [](VoltageFrequency& to, std::string_view text) { return setInput(to.tripInput, text); }},
    {"start", [](VoltageFrequency& to, std::string_view text) { return setInput(to.startInput, text); }},
};

Kes::Result makeVoltageFrequency(const Settings& settings, Relay& relay)
{
    VoltageFrequency values;
    auto result =
        readSettings(settings, std::span<const Setting<VoltageFrequency>>(voltageFrequencySettings), values);
    if (result)
        relay = std::make_shared<VoltageFrequencyRelay>(values);
    return result;
}

struct Kind {
    const char* name;
    Kes::Result (*make)(const Settings& settings, Relay& relay);
};

constexpr Kind kinds[] = {
    {"overcurrent", makeOvercurrent},
    {"voltage-frequency", makeVoltageFrequency},
};

} // namespace

std::vector<std::string> getKinds()
{
    std::vector<std::string> names;
    for (const auto& kind : kinds)
        names.emplace_back(kind.name);
    return names;
}

Kes::Result make(const std::string& kind, const Settings& settings, Relay& relay)
{
    const auto found = std::find_if(std::begin(kinds), std::end(kinds),
                                    [&](const Kind& known) { return kind == known.name; });
    return found == std::end(kinds) ? refuse("Wire.kind", kind) : found->make(settings, relay);
}

} // namespace KesDriver::RelayCatalog
