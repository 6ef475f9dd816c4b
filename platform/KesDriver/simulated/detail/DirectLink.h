#pragma once

#include <KesDriver/IKestoLink.h>
#include <KesDriver/simulated/SimulatedKesto.h>
#include <KesDriver/simulated/detail/SimulatedHost.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace KesDriver {

/// A connection to a simulated device without a session, for tests: a request is carried out on the calling
/// thread, and reports come on the device's own, so that only what a test lets fail is ever late. The device
/// is looked for anew at each attempt to connect. Any thread.
class KES_EXPORT DirectLink : public IKestoLink {
public:
    /// Null when there is no device.
    using Find = std::function<std::shared_ptr<SimulatedKesto>()>;

    DirectLink(Find find, std::string name);
    ~DirectLink() override;

    bool isSimulated() const override { return true; }
    void setReceiver(std::weak_ptr<IReportReceiver> receiver) override;
    Kes::Result connect(ConnectionNumber& connection) override;
    void disconnect() override;
    Kes::Result identify(KestoIdentity& identity) override;
    Kes::Result readState(KestoState& state) override;
    Kes::Result readLimits(OutputLimits& limits) override;
    Kes::Result readTime(DeviceTime& time) override;
    Kes::Result setAuxDC(bool enable, double volts) override;
    Kes::Result startWorkingMode() override;
    Kes::Result stopWorkingMode() override;
    Kes::Result setOutputs(const OutputState& outputs) override;
    Kes::Result runSequence(const OutputSequence& sequence) override;
    Kes::Result stopOutputs() override;
    Kes::Result armSequence(const OutputSequence& sequence) override;
    Kes::Result startArmed(const StartMoment& moment) override;
    Kes::Result readClock(ClockReading& reading) override;

private:
    using Call = Kes::Result (SimulatedHost::*)(const SimulatedHost::Connection&,
                                                const SimulatedHost::Request&);

    /// The host and the connection of the last attempt.
    struct Current {
        std::shared_ptr<SimulatedHost> host;
        SimulatedHost::Connection connection;
    };

    Current _getCurrent() const;
    Kes::Result _call(const SimulatedHost::Request& request, Call call = &SimulatedHost::call) const;

    const Find _find;
    const std::string _name;
    const std::shared_ptr<SimulatedReceiver> _receiver = std::make_shared<SimulatedReceiver>();
    mutable std::mutex _mutex;
    Current _current;
    ConnectionNumber _lastNumber = 0;
};

} // namespace KesDriver
