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

/// The value of a word in a list of them.
template <typename Value, std::size_t N>
bool setWord(Value& target, std::string_view text, const std::string_view (&words)[N])
{
    const auto found = std::find(std::begin(words), std::end(words), text);
    if (found == std::end(words))
        return false;
    target = static_cast<Value>(found - std::begin(words));
    return true;
}

/// A stage is in use once its setting is given; 0 takes it out of use.
template <std::size_t stage>
bool setPickUp(Overcurrent& values, std::string_view text)
{
    values.stages[stage].isUsed = FieldText::readNumber(text) != 0.0;
    return !values.stages[stage].isUsed || setPositive(values.stages[stage].settingCurrent, text);
}

template <std::size_t stage>
bool setMultiplier(Overcurrent& values, std::string_view text)
{
    return setPositive(values.stages[stage].timeMultiplier, text);
}

template <std::size_t stage>
bool setCurve(Overcurrent& values, std::string_view text)
{
    constexpr std::string_view words[] = {"SI",      "VI",      "EI",      "LTI",  "DT",
                                          "IEEE-MI", "IEEE-VI", "IEEE-EI", "TABLE"};
    return setWord(values.stages[stage].curve, text, words);
}

template <std::size_t stage>
bool setTime(Overcurrent& values, std::string_view text)
{
    return setPositive(values.stages[stage].definiteTime, text);
}

/// "2:10;5:3.5"
template <std::size_t stage>
bool setTable(Overcurrent& values, std::string_view text)
{
    constexpr std::size_t mostPairs = 50;
    const auto parts = FieldText::split(text, ';', mostPairs);
    if (!parts)
        return false;
    auto& table = values.stages[stage].table;
    table.clear();
    for (const auto part : *parts) {
        const auto colon = std::min(part.find(':'), part.size());
        auto& [multiple, seconds] = table.emplace_back();
        if (!setPositive(multiple, part.substr(0, colon)) ||
            !setPositive(seconds, part.substr(std::min(colon + 1, part.size()))))
            return false;
    }
    return std::is_sorted(table.begin(), table.end());
}

template <std::size_t stage>
bool setDirection(Overcurrent& values, std::string_view text)
{
    constexpr std::string_view words[] = {"NONE", "FORWARD", "REVERSE"};
    return setWord(values.stages[stage].direction, text, words);
}

bool setConnection(Overcurrent& values, std::string_view text)
{
    constexpr std::string_view words[] = {"PHASES", "A", "B", "C", "N"};
    return setWord(values.connection, text, words);
}

bool setAngle(Overcurrent& values, std::string_view text)
{
    const auto value = FieldText::readNumber(text);
    values.characteristicAngle = value.value_or(0.0);
    return value && std::fabs(*value) <= 180.0;
}

constexpr Setting<Overcurrent> overcurrentSettings[] = {
    {"pickup", setPickUp<0>},
    {"tms", setMultiplier<0>},
    {"curve", setCurve<0>},
    {"time", setTime<0>},
    {"table", setTable<0>},
    {"direction", setDirection<0>},
    {"pickup2", setPickUp<1>},
    {"tms2", setMultiplier<1>},
    {"curve2", setCurve<1>},
    {"time2", setTime<1>},
    {"table2", setTable<1>},
    {"direction2", setDirection<1>},
    {"pickup3", setPickUp<2>},
    {"tms3", setMultiplier<2>},
    {"curve3", setCurve<2>},
    {"time3", setTime<2>},
    {"table3", setTable<2>},
    {"direction3", setDirection<2>},
    {"pickupN", setPickUp<3>},
    {"tmsN", setMultiplier<3>},
    {"curveN", setCurve<3>},
    {"timeN", setTime<3>},
    {"tableN", setTable<3>},
    {"directionN", setDirection<3>},
    {"angle", setAngle},
    {"connection", setConnection},
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
