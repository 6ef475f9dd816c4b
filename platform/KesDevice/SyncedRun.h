#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Signal.h>
#include <KesCommon/WaitCondition.h>
#include <KesCommon/Worker.h>
#include <KesDevice/Kesto.h>
#include <KesDriver/Report.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace KesDevice {

/// One run of sequences on several devices that began at one moment, made by
/// `HardwareManager::startSequences`. Collects what the devices report, on one time base. When one of the
/// devices fails or ends its sequence incomplete, all others are stopped.
///
/// Any thread; `stop` and the destructor ask devices: not on the GUI thread. A run that is given up before
/// its end is stopped.
class KES_EXPORT SyncedRun {
public:
    /// An event of one device.
    struct Event {
        /// Which of the configuration's devices, from 0.
        std::size_t device = 0;
        KesDriver::Report report;
        /// The time since the device's sequence began, which is the common start to within `getUncertainty`.
        std::chrono::microseconds sinceStart{0};
    };

    ~SyncedRun();
    SyncedRun(const SyncedRun&) = delete;
    SyncedRun& operator=(const SyncedRun&) = delete;

    /// A new event is in `getEvents()`, or the run has ended. On a device thread.
    Kes::Signal<void()> signalChanged;

    /// So far, in the order of the common time as far as the devices have reported.
    std::vector<Event> getEvents() const;
    /// The greatest difference between the devices' starts, as the mode of synchronisation states it.
    std::chrono::microseconds getUncertainty() const { return _uncertainty; }

    /// Whether every device has reported the end of its sequence, or has failed.
    bool isEnded() const;
    /// Whether every device has run its whole sequence.
    bool isComplete() const;
    /// Which device has failed and how; empty while none has.
    std::string getError() const;

    /// Waits for the end; false when it has not come by then.
    bool waitUntil(Kes::WaitCondition::TimePoint time);

    /// Sets the outputs of all devices to zero; returns when all have answered.
    void stop();

private:
    friend class HardwareManager;
    struct Device;

    explicit SyncedRun(std::chrono::microseconds uncertainty);
    /// Before the start: the devices that take part, and which of their configuration's they are.
    void _begin(const std::vector<std::shared_ptr<Kesto>>& kestos, const std::vector<std::size_t>& numbers);
    void _onReport(Device& device, const KesDriver::Report& report);
    bool _collect(Device& device, const KesDriver::Report& report, KesDriver::DeviceTime time);
    bool _fail(Device& device, const std::string& reason);
    bool _end(Device& device, const std::string& error);
    bool _stopAll(const std::string& error);
    void _stopRest();
    bool _isEndedNow() const;

    const std::chrono::microseconds _uncertainty;
    mutable std::mutex _mutex;
    Kes::WaitCondition _ended;
    /// The same from the beginning on.
    std::vector<std::unique_ptr<Device>> _devices;
    std::vector<Event> _events;
    std::string _error;
    bool _isStopping = false;
    /// Tell the devices to stop; made once.
    std::vector<std::shared_ptr<Kes::Worker>> _stops;
};

} // namespace KesDevice
