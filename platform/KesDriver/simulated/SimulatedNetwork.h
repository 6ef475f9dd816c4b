#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoNetwork.h>
#include <KesDriver/simulated/SimulatedKesto.h>

#include <memory>

namespace KesDriver {

/// A network of devices that exist only in this process, and the bench they stand on. Any thread.
class KES_EXPORT SimulatedNetwork : public IKestoNetwork {
public:
    /// The one behind `getEmbeddedNetwork`, for programs that wire something to its devices.
    static std::shared_ptr<SimulatedNetwork> getEmbedded();

    SimulatedNetwork();
    ~SimulatedNetwork() override;

    /// Puts a device at an address; false when the address is taken.
    bool add(const NetAddress& address, std::shared_ptr<SimulatedKesto> device);
    void remove(const NetAddress& address);
    /// Null when no device has the address.
    std::shared_ptr<SimulatedKesto> get(const NetAddress& address) const;

    /// Without the devices that are set to be silent; in ascending order, and always complete. A device
    /// that somebody in this process controls is in use by "this program".
    Kes::Result find(const FoundListener& found, std::stop_token stop) override;
    /// A `StreamLink` to whichever device has the address at the moment of connecting; with none when the
    /// network has gone.
    std::unique_ptr<IKestoLink> createLink(const NetAddress& address) override;

    /// Presses a button that is wired to this input of every device: closes the inputs at one moment and
    /// opens them 100 ms of device time later. Each device sees it a delay of its own later, at most 100 us.
    void closeStartContact(unsigned input);

    /// From now on binary output 1 of this device drives input 8 of every other one: closes and opens it, at
    /// each a delay of its own later, at most 200 us of device time. Only the last call counts; false without
    /// such a device.
    bool wireStartLine(const NetAddress& first);

private:
    struct Impl;
    const std::shared_ptr<Impl> _impl;
};

} // namespace KesDriver
