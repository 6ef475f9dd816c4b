#pragma once

#include <KesDevice/HardwareManager.h>

#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace KesDevice {

/// The configurations that `HardwareControl` owns. Any thread.
///
/// A replaced configuration is kept for a few replacements more: a thread that has just asked for the current
/// one still uses it. It holds no connection and does nothing any more.
class HardwareControlState {
public:
    /// Made at first use, together with the simulated device that every program finds.
    static HardwareControlState& get();
    ~HardwareControlState();

    /// Null when there is none yet.
    HardwareManager* getCurrent() const;
    /// The global or the embedded one; null when there is none.
    HardwareManager* get(bool embedded) const;
    /// Takes the configuration as the global one if there is none.
    void offerGlobal(std::unique_ptr<HardwareManager> hardware);
    /// Returns the configuration replaced, which is kept as a retired one; null when there was none.
    HardwareManager* exchange(std::unique_ptr<HardwareManager> hardware, bool embedded);
    /// Keeps a configuration of a program's own as a retired one.
    void keepRetired(std::unique_ptr<HardwareManager> hardware);
    /// Destroys the oldest retired configurations that are not busy.
    void dropRetired();

    bool isEmbedded() const;
    void setEmbedded(bool embedded);

    std::vector<std::shared_ptr<Kesto>> leaseKestos() const;

private:
    HardwareControlState();
    HardwareManager* _getCurrent() const;

    mutable std::mutex _mutex;
    bool _embeddedMode = false;
    std::deque<std::unique_ptr<HardwareManager>> _retired;
    std::unique_ptr<HardwareManager> _global;
    std::unique_ptr<HardwareManager> _embedded;
};

} // namespace KesDevice
