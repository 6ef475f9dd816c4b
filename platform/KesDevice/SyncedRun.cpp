#include <KesDevice/SyncedRun.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesDevice/HardwareManagerText.h>

#include <algorithm>
#include <type_traits>
#include <utility>
#include <variant>

namespace KesDevice {

using namespace KesDriver;

struct SyncedRun::Device {
    std::shared_ptr<Kesto> kesto;
    std::size_t number = 0;
    /// On the device's own clock.
    std::optional<DeviceTime> start;
    bool isEnded = false;
    bool isComplete = false;
    /// The system had no thread to give for stopping it.
    bool isWithoutThread = false;
    /// Last: no report comes any more when the rest goes.
    Kes::ScopedConnection reports;
};

SyncedRun::SyncedRun(std::chrono::microseconds uncertainty) : _uncertainty(uncertainty) {}

SyncedRun::~SyncedRun()
{
    for (const auto& device : _devices)
        device->reports.disconnect();
    stop();
}

void SyncedRun::_begin(const std::vector<std::shared_ptr<Kesto>>& kestos,
                       const std::vector<std::size_t>& numbers)
{
    // All are known before the first report, which may be a failure that stops all.
    for (std::size_t i = 0; i < kestos.size(); ++i) {
        auto& device = *_devices.emplace_back(std::make_unique<Device>());
        device.kesto = kestos[i];
        device.number = numbers[i];
    }
    for (const auto& device : _devices)
        device->reports = device->kesto->signalReport.connect(
            [this, &listening = *device](const Report& report) { _onReport(listening, report); });
}

void SyncedRun::_onReport(Device& device, const Report& report)
{
    const bool isNew = std::visit(
        [&](const auto& content) {
            using Content = std::decay_t<decltype(content)>;
            if constexpr (std::is_same_v<Content, KesAvary>) {
                return _fail(device, describeFaults(content));
            } else if constexpr (std::is_same_v<Content, ConnectionLost>) {
                return _fail(device, device.kesto->getStateReason());
            } else {
                const bool isCollected = _collect(device, report, content.time);
                if constexpr (std::is_same_v<Content, SequenceEvent>)
                    return content.isComplete ? _end(device, {})
                                              : _fail(device, device.kesto->getStateReason());
                return isCollected;
            }
        },
        report);
    if (isNew)
        signalChanged.emit();
}

bool SyncedRun::_collect(Device& device, const Report& report, DeviceTime time)
{
    std::lock_guard lock(_mutex);
    if (const auto* step = std::get_if<StepEvent>(&report); step && step->step == 0 && !device.start)
        device.start = time;
    // What comes before the start belongs to the time before.
    if (!device.start || device.isEnded)
        return false;
    Event event{device.number, report, time - *device.start};
    const auto place =
        std::upper_bound(_events.begin(), _events.end(), event,
                         [](const Event& a, const Event& b) { return a.sinceStart < b.sinceStart; });
    _events.insert(place, std::move(event));
    return true;
}

/// What has failed has not run its whole sequence, also when nobody can say any more why: a record may be
/// empty, and a device that was lost may have been disconnected by now.
bool SyncedRun::_fail(Device& device, const std::string& reason)
{
    return _end(device, reason.empty() ? lng::HardwareManager::get("Errors.Kesto.sequenceEnded") : reason);
}

/// The device's part is over; an error ends the others' part as well. False when it was over before.
bool SyncedRun::_end(Device& device, const std::string& error)
{
    bool isStopping = false;
    {
        std::lock_guard lock(_mutex);
        if (std::exchange(device.isEnded, true))
            return false;
        device.isComplete = error.empty();
        isStopping = !error.empty() && _stopAll(device.kesto->toDisplayString() + ": " + error);
        _ended.notifyAll();
    }
    if (isStopping)
        _stopRest();
    return true;
}

/// Each on a thread of its own: one that does not answer keeps no other one waiting. With the lock. True
/// for the first call, whose caller continues with `_stopRest`.
bool SyncedRun::_stopAll(const std::string& error)
{
    if (_error.empty())
        _error = error;
    if (std::exchange(_isStopping, true))
        return false;
    for (const auto& device : _devices) {
        const auto stop = [kesto = device->kesto] { (void)kesto->stopOutputs(); };
        if (auto worker = Kes::Worker::tryStart("KesDevice_Stop", stop))
            _stops.push_back(std::make_shared<Kes::Worker>(std::move(*worker)));
        else
            device->isWithoutThread = true;
    }
    return true;
}

/// Those for which there was no thread, here. Without the lock. One that has ended may be in the
/// next run already.
void SyncedRun::_stopRest()
{
    for (const auto& device : _devices) {
        {
            std::lock_guard lock(_mutex);
            if (!device->isWithoutThread || device->isEnded)
                continue;
        }
        (void)device->kesto->stopOutputs();
    }
}

void SyncedRun::stop()
{
    std::vector<std::shared_ptr<Kes::Worker>> stops;
    {
        std::lock_guard lock(_mutex);
        if (!_isEndedNow())
            (void)_stopAll(lng::HardwareManager::get("Errors.Sync.stopped"));
        stops = _stops;
    }
    _stopRest();
    for (const auto& stop : stops)
        stop->wait();
}

std::vector<SyncedRun::Event> SyncedRun::getEvents() const
{
    std::lock_guard lock(_mutex);
    return _events;
}

bool SyncedRun::_isEndedNow() const
{
    return std::all_of(_devices.begin(), _devices.end(), [](const auto& device) { return device->isEnded; });
}

bool SyncedRun::isEnded() const
{
    std::lock_guard lock(_mutex);
    return _isEndedNow();
}

bool SyncedRun::isComplete() const
{
    std::lock_guard lock(_mutex);
    return std::all_of(_devices.begin(), _devices.end(),
                       [](const auto& device) { return device->isComplete; });
}

std::string SyncedRun::getError() const
{
    std::lock_guard lock(_mutex);
    return _error;
}

bool SyncedRun::waitUntil(Kes::WaitCondition::TimePoint time)
{
    std::unique_lock lock(_mutex);
    return _ended.waitUntil(lock, time, [this] { return _isEndedNow(); });
}

} // namespace KesDevice
