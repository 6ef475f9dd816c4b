#pragma once

#include <KesDriver/serving/TestClient.h>
#include <support/FaultyWire.h>
#include <support/WaitUntil.h>

#include <KesDevice/HardwareManager.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <memory>

namespace KesTest {

/// One device on the network behind a cable that can fail, the configuration of a program that uses it, and
/// somebody who runs tests with it and writes down what he is told. Each has addresses of its own, and each
/// process a port, so many can live side by side.
class NetworkRig {
public:
    explicit NetworkRig(unsigned number);
    ~NetworkRig();
    NetworkRig(const NetworkRig&) = delete;
    NetworkRig& operator=(const NetworkRig&) = delete;

    std::shared_ptr<KesDriver::SimulatedKesto> device() const;
    FaultyWire& wire() { return *_wire; }
    KesDevice::HardwareManager& hardware() { return *_hardware; }
    KesDevice::Kesto& kesto() { return *_kesto; }

    /// Off and on again.
    void reboot();
    /// Another program takes control, as soon as it can; until `letGo`.
    void takeOver();
    void letGo() { _rival.reset(); }

    /// A run as programs make it. `during` is called while it is under way, in its own time.
    struct Moments {
        std::function<void()> beforePrepare = [] {};
        std::function<void()> beforeStart = [] {};
        std::function<void()> withOutputs = [] {};
        bool isRamp = false;
        /// Of the sequence, if there is one; it takes its time on the way when there are thousands.
        std::size_t steps = 1;
        /// On a thread of its own.
        std::function<void()> whileSending = nullptr;
        /// How long it runs when nothing ends it.
        std::chrono::milliseconds length{0};
    };
    /// Whether it came to its own end.
    bool run(const Moments& moments);
    /// Ends the connection.
    void disconnect();
    /// Waits until the program has heard all that the device has to say; without a connection, until the
    /// device has noticed that nobody controls it any more. False after ten seconds.
    bool settle();

    /// Returns how long it took, or nothing after ten seconds.
    std::optional<std::chrono::milliseconds> waitForOutputsOff() const;
    std::vector<std::string> takeMessages();
    std::string getAddress() const { return _address; }

private:
    void _serve();
    void _tell(const std::string& text);
    bool _note(const Kes::Result& result);

    const std::string _address;
    const std::string _deviceAddress;
    std::shared_ptr<KesDriver::SimulatedKesto> _device;
    std::unique_ptr<KesDriver::DeviceServer> _server;
    std::unique_ptr<FaultyWire> _wire;
    std::unique_ptr<KesDevice::HardwareManager> _hardware;
    std::shared_ptr<KesDevice::Kesto> _kesto;
    std::unique_ptr<KesDriver::IKestoLink> _rival;
    mutable std::mutex _mutex;
    std::vector<std::string> _messages;
    std::atomic<unsigned> _markersHeard{0};
};

} // namespace KesTest
