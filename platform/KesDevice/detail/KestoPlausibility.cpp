#include <KesDevice/detail/KestoPlausibility.h>

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
constexpr DeviceTime longestUptime = std::chrono::hours(24 * 366 * 10);
/// From whatever day the common clock counts.
constexpr CommonTime furthestDate = std::chrono::hours(24L * 366 * 10000);
constexpr unsigned mostBinaryOutputs = 32;
constexpr std::size_t longestIdentityText = 32;

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

KestoIdentity correct(KestoIdentity identity)
{
    identity.firmwareVersion = correctText(identity.firmwareVersion, longestIdentityText);
    identity.calibrationDate = correctText(identity.calibrationDate, longestIdentityText);
    return identity;
}

bool isPlausible(DeviceTime time)
{
    return time >= DeviceTime(0) && time <= longestUptime;
}

bool isPlausible(const ClockReading& reading)
{
    return isPlausible(reading.device) && reading.common > -furthestDate && reading.common < furthestDate;
}

OutputLimits correct(const OutputLimits& limits)
{
    const bool isPlausible =
        isRange(0.0, limits.maximumAmperes) && isRange(0.0, limits.maximumVolts) &&
        isRange(limits.minimumHertz, limits.maximumHertz) && isRange(0.0, limits.maximumVoltAmperes) &&
        isRange(0.0, limits.continuousAmperes) && limits.overloadDuration >= DeviceTime(0) &&
        limits.binaryInputs <= mostBinaryInputs && limits.binaryOutputs <= mostBinaryOutputs &&
        limits.maximumSteps > 0 && limits.releaseTime.count() >= 0;
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

} // namespace KesDevice::KestoPlausibility
