#pragma once

#include <KesCommon/Worker.h>
#include <KesDevice/Kesto.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace KesDevice {

/// Sets the outputs of a configuration's devices to zero when one of them has failed. Shared by the
/// configuration and its devices, which may fail while it is going. Any thread.
class FaultStopper {
public:
    FaultStopper() = default;
    FaultStopper(const FaultStopper&) = delete;
    FaultStopper& operator=(const FaultStopper&) = delete;

    bool isEnabled() const { return _isEnabled; }
    void setIsEnabled(bool enabled) { _isEnabled = enabled; }

    void add(const std::shared_ptr<Kesto>& kesto);
    void remove(const Kesto& kesto);

    /// Tells all devices that are working to stop, each on a thread of its own, and returns at once: the
    /// fault is reported meanwhile. A device gets the order only once at a time.
    void stopOthers(const Kesto& failed);

    /// Returns when no order to stop is under way any more.
    void wait();

private:
    struct Device {
        std::weak_ptr<Kesto> kesto;
        std::shared_ptr<Kes::Worker> stopping;
    };

    std::atomic<bool> _isEnabled{false};
    std::mutex _mutex;
    std::map<const Kesto*, Device> _devices;
    /// Of devices that were removed meanwhile.
    std::vector<std::shared_ptr<Kes::Worker>> _leaving;
};

} // namespace KesDevice
