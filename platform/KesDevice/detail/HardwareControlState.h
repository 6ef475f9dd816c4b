#pragma once

#include <KesDevice/HardwareManager.h>

#include <memory>
#include <mutex>

namespace KesDevice {

/// What `HardwareControl` holds: the network and the configurations in use. Any thread.
class HardwareControlState {
public:
    /// Made at first use.
    static HardwareControlState& get();
    ~HardwareControlState();

    std::shared_ptr<KesDriver::IKestoNetwork> getNetwork();
    void setNetwork(std::shared_ptr<KesDriver::IKestoNetwork> network);

    /// Null when there is none yet.
    std::shared_ptr<HardwareManager> getCurrent() const;
    /// Takes the configuration as the global one if there is none.
    void offerGlobal(std::shared_ptr<HardwareManager> hardware);
    /// Returns the configuration replaced; null when there was none.
    std::shared_ptr<HardwareManager> exchange(std::shared_ptr<HardwareManager> hardware, bool embedded);

    bool isEmbedded() const;
    void setEmbedded(bool embedded);

private:
    HardwareControlState();

    mutable std::mutex _mutex;
    std::shared_ptr<KesDriver::IKestoNetwork> _network;
    bool _embeddedMode = false;
    std::shared_ptr<HardwareManager> _global;
    std::shared_ptr<HardwareManager> _embedded;
};

} // namespace KesDevice
