#include <KesDevice/KestoPlausibility.h>

#include <glib.h>
#include <glibmm/ustring.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KesDevice::KestoPlausibility {

namespace {

using namespace KesDriver;

constexpr std::size_t mostChannels = 64;
constexpr std::size_t longestChannelName = 16;
constexpr double mostVolts = 1000.0;
constexpr unsigned mostBinaryInputs = 256;
/// No device runs longer than this without being switched off.
constexpr DeviceTime longestUptime = std::chrono::hours(24 * 366 * 10);

bool isRange(double minimum, double maximum)
{
    return std::isfinite(minimum) && std::isfinite(maximum) && minimum >= 0.0 && maximum > minimum;
}

} // namespace

bool isPlausible(const KestoIdentifer& identifer)
{
    const auto type = identifer.getType();
    const auto number = identifer.getSerialNumber();
    return type != 0 && type != std::numeric_limits<decltype(type)>::max() && number != 0 &&
           number != std::numeric_limits<decltype(number)>::max();
}

bool isPlausible(const KestoState& state)
{
    return std::isfinite(state.auxDCVolts) && std::abs(state.auxDCVolts) <= mostVolts;
}

OutputLimits correct(const OutputLimits& limits)
{
    const bool isPlausible = isRange(0.0, limits.maximumAmperes) && isRange(0.0, limits.maximumVolts) &&
                             isRange(limits.minimumHertz, limits.maximumHertz) &&
                             limits.binaryInputs <= mostBinaryInputs;
    return isPlausible ? limits : OutputLimits{};
}

KesAvary correct(KesAvary avary, const KestoIdentifer& identifer)
{
    if (identifer.getSerialNumber() != 0) {
        avary.kestoType = identifer.getType();
        avary.serialNumber = identifer.getSerialNumber();
    }
    avary.channels.resize(std::min(avary.channels.size(), mostChannels));
    for (auto& channel : avary.channels)
        channel.name = correctText(channel.name, longestChannelName);
    return avary;
}

std::string correctText(const std::string& text, std::size_t longest)
{
    constexpr std::size_t mostBytesOfCharacter = 4;
    const auto bytes = std::min(text.size(), longest * mostBytesOfCharacter);
    gchar* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(bytes));
    Glib::ustring result(valid);
    g_free(valid);
    std::string shown = result.substr(0, longest).raw();
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20U; }, ' ');
    return shown;
}

bool EventFilter::accept(const InputEvent& event, const OutputLimits& limits)
{
    return _acceptTime(event.time) && event.input >= 1 && event.input <= limits.binaryInputs;
}

bool EventFilter::accept(const StepEvent& event, std::size_t stepCount)
{
    return _acceptTime(event.time) && event.step < stepCount;
}

bool EventFilter::accept(SequenceEvent& event)
{
    if (_acceptTime(event.time))
        return true;
    event = {false, _last};
    return false;
}

/// A time that went back is still taken as the new measure: one wild time must not shut out all later ones.
bool EventFilter::_acceptTime(DeviceTime time)
{
    if (time < DeviceTime(0) || time > longestUptime)
        return false;
    const bool isForward = time >= _last;
    _last = time;
    return isForward;
}

} // namespace KesDevice::KestoPlausibility
