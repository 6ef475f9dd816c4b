#pragma once

#include <KesDevice/HardwareManager.h>
#include <KesDevice/view/DeviceEntry.h>
#include <KesDriver/KestoIdentifer.h>

#include <sigc++/sigc++.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace KesDevice {

/// A configuration while it is edited: a copy, with what the user has typed and the devices have reported.
/// Nothing is connected by it. GUI thread.
class KES_EXPORT HardwareDraft {
public:
    /// A copy of the devices, their supplies and the synchronisation mode; `edited` is not needed afterwards.
    explicit HardwareDraft(const HardwareManager& edited);
    HardwareDraft(const HardwareDraft&) = delete;
    HardwareDraft& operator=(const HardwareDraft&) = delete;

    /// The devices, their order or what is known of them have changed.
    sigc::signal<void()> signalChanged;

    std::vector<DeviceEntry> getDevices() const;
    const std::shared_ptr<KesDriver::IKestoNetwork>& getNetwork() const { return _hardware->getNetwork(); }
    bool contains(const Kesto::Address& address) const;

    /// Reads an address as the user types it; refuses what no device can have, and what is in the list
    /// already.
    Kes::Result checkAddress(const std::string& text, Kesto::Address& address) const;
    /// Appends a device; refuses as `checkAddress`.
    Kes::Result add(const std::string& address);
    void remove(std::size_t index);
    /// By how many places, down being positive; out of the list nothing happens.
    void move(std::size_t index, int by);
    /// The voltage as typed, in volts. One that is refused is kept as typed with the reason, and does not
    /// take effect; switching the supply off takes a refused one back.
    void setAuxDC(std::size_t index, bool enable, const std::string& volts);
    /// The first device with a refused voltage.
    std::optional<std::size_t> findProblem() const;

    /// What is known of a device; nothing happens when it has been removed meanwhile.
    void setAsking(const Kesto::Address& address);
    void setIdentifer(const Kesto::Address& address, const KesDriver::KestoIdentifer& identifer,
                      bool isSimulated);
    void setIdentityError(const Kesto::Address& address, const std::string& error);

    const SyncMode& getSyncMode() const { return _hardware->getSyncManager().getActiveMode(); }
    void setSyncMode(SyncModeKind kind) { _hardware->getSyncManager().setActiveMode(kind); }

    /// The new configuration, not connected yet; the draft is of no use afterwards. A voltage that is refused
    /// is replaced by the last one that was accepted.
    std::unique_ptr<HardwareManager> take();

private:
    struct Device {
        Kesto::Address address;
        /// The last voltage that was accepted.
        double volts;
        DeviceEntry entry;
    };

    void _append(const Kesto::Address& address, bool isAuxDCEnabled, double volts);
    void _setIdentity(const Kesto::Address& address, IdentityState state, const std::string& text);

    /// The copy without its devices.
    std::unique_ptr<HardwareManager> _hardware;
    std::vector<Device> _devices;
};

} // namespace KesDevice
