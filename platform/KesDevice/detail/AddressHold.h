#pragma once

#include <KesDriver/IKestoNetwork.h>

#include <functional>

namespace KesDevice {

/// Says that somebody in this process is about to let go of the device at an address: a configuration that
/// has been replaced and is still switching off, or a question who the device is. A device takes one
/// connection at a time, so whoever wants to connect waits for the end of it, and holds the address until the
/// connection is made or has failed. Any thread.
class AddressHold {
public:
    /// At once, whoever else holds the address: for one who is connected already.
    explicit AddressHold(const KesDriver::NetAddress& address);
    ~AddressHold();
    AddressHold(AddressHold&& other) noexcept;
    AddressHold& operator=(AddressHold&&) = delete;

    /// Waits until nobody else holds the address, 3 s at most: by then even a device that does not answer has
    /// been let go of. Also returns when the hold is not wanted any more; asked whenever `notify` was called.
    /// Any thread but the GUI thread.
    static AddressHold take(
        const KesDriver::NetAddress& address, const std::function<bool()>& isWanted = [] { return true; });
    static void notify();

private:
    struct IsCounted {};
    AddressHold(const KesDriver::NetAddress& address, IsCounted) : _address(address) {}

    KesDriver::NetAddress _address;
    bool _isHeld = true;
};

} // namespace KesDevice
