#include <KesDriver/simulated/serving/detail/ServedDevice.h>

#include <KesDriver/scpi/Text.h>

#include <algorithm>
#include <random>
#include <utility>

namespace KesDriver {

namespace {

using Bits = Scpi::StatusRegister::Bits;

/// Bits of the operation register.
constexpr unsigned runs = 1U << 3U;
constexpr unsigned waits = 1U << 5U;
constexpr unsigned amplifiersOn = 1U << 8U;
constexpr unsigned auxiliaryOn = 1U << 9U;
/// Bits of the questionable register.
constexpr unsigned overload = 1U << 0U;
constexpr unsigned overheat = 1U << 4U;
constexpr unsigned channelLost = 1U << 8U;
constexpr unsigned emergencyButton = 1U << 9U;

Bits getOperation(const SimulatedDevice& device)
{
    unsigned bits = 0;
    bits |= device.hasSequence() && !device.isArmed() ? runs : 0U;
    bits |= device.isArmed() ? waits : 0U;
    bits |= device.isWorking() ? amplifiersOn : 0U;
    bits |= device.isAuxDCEnabled() ? auxiliaryOn : 0U;
    return static_cast<Bits>(bits);
}

Bits getQuestionable(const SimulatedDevice& device)
{
    const auto& faults = device.getFaults();
    unsigned bits = faults.isQuickShutdown ? emergencyButton : 0U;
    for (const auto& channel : faults.channels) {
        bits |= channel.isOverload ? overload : 0U;
        bits |= channel.isOverheat ? overheat : 0U;
        bits |= channel.isDisconnected ? channelLost : 0U;
    }
    return static_cast<Bits>(bits);
}

OutputLimits readLimits(SimulatedHost& host)
{
    return host.use([](SimulatedDevice& device) { return device.getLimits(); });
}

DeviceTime getTime(const Report& report, const SimulatedDevice& device)
{
    if (const auto* const input = std::get_if<InputEvent>(&report))
        return input->time;
    if (const auto* const step = std::get_if<StepEvent>(&report))
        return step->time;
    if (const auto* const sequence = std::get_if<SequenceEvent>(&report))
        return sequence->time;
    return device.getLastTime();
}

/// A device that talks nonsense reports thousands of channels with endless names.
KesAvary shorten(const KesAvary& avary)
{
    constexpr std::size_t mostChannels = 16;
    constexpr std::size_t longestName = 100;
    KesAvary record;
    record.isQuickShutdown = avary.isQuickShutdown;
    for (const auto& channel : avary.channels) {
        if (record.channels.size() == mostChannels)
            break;
        record.channels.push_back(channel);
        record.channels.back().name = Scpi::cut(channel.name, longestName);
    }
    return record;
}

EventLog::Content toContent(const Report& report)
{
    return std::visit(
        [](const auto& event) -> EventLog::Content {
            if constexpr (std::is_same_v<std::decay_t<decltype(event)>, ConnectionLost>)
                return ValueText::ReleaseRecord{};
            else if constexpr (std::is_same_v<std::decay_t<decltype(event)>, KesAvary>)
                return shorten(event);
            else
                return event;
        },
        report);
}

} // namespace

std::shared_ptr<ServedDevice> ServedDevice::create(std::shared_ptr<SimulatedHost> host)
{
    auto device = std::make_shared<ServedDevice>(std::move(host));
    device->getControl().setLost([weak = std::weak_ptr(device)](SessionNumber session) {
        if (const auto served = weak.lock())
            served->getSessions().drop(session);
    });
    device->getHost().setObserver(device);
    return device;
}

ServedDevice::ServedDevice(std::shared_ptr<SimulatedHost> host)
    : _host(std::move(host)),
      _limits(readLimits(*_host)),
      _boot(std::random_device()()),
      _control(std::make_shared<DeviceControl>(_host, _events))
{}

void ServedDevice::end()
{
    _host->setObserver(nullptr);
}

void ServedDevice::acknowledge(std::uint64_t number)
{
    _host->goOn([&] { return number >= _events.getLast(); });
}

bool ServedDevice::observe(const Report& report, const SimulatedDevice& device)
{
    // A sequence may begin and end before anybody looks.
    if (std::holds_alternative<StepEvent>(report))
        _sessions.noteConditions(static_cast<Bits>((getOperation(device) | runs) & ~waits),
                                 getQuestionable(device));
    _events.add(getTime(report, device), toContent(report));
    return _control->hasLockstep();
}

void ServedDevice::settle(const SimulatedDevice& device)
{
    _sessions.noteConditions(getOperation(device), getQuestionable(device));
}

} // namespace KesDriver
