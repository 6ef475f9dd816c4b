#pragma once

#include <KesDriver/IKestoLink.h>
#include <KesDriver/SimulatedKesto.h>
#include <KesDriver/SimulatedPort.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace KesDriver {

/// The connection to a simulated device, which is looked for anew at each attempt to connect. Any thread.
class SimulatedLink : public IKestoLink {
public:
    using Find = std::function<std::shared_ptr<SimulatedKesto>()>;

    SimulatedLink(Find find, std::string name);
    ~SimulatedLink() override;

    bool isSimulated() const override;
    Kes::Result connect() override;
    void disconnect() override;
    bool isConnected() const override;
    Kes::Result identify(KestoIdentifer& identifer) override;
    Kes::Result readState(KestoState& state) override;
    OutputLimits getLimits() const override;
    Kes::Result setAuxDC(bool enable, double volts) override;
    Kes::Result startWorkingMode() override;
    Kes::Result stopWorkingMode() override;
    Kes::Result setOutputs(const OutputState& outputs) override;
    Kes::Result runSequence(const OutputSequence& sequence) override;
    Kes::Result stopOutputs() override;
    DeviceTime getTime() const override;
    void setListener(IKestoLinkListener* listener) override;

private:
    using Device = std::shared_ptr<SimulatedKesto::Impl>;

    Device _getDevice() const;
    template <typename... Parameters, typename... Arguments>
    Kes::Result _call(Kes::Result (SimulatedKesto::Impl::*operation)(const std::shared_ptr<SimulatedPort>&,
                                                                     const std::string&, Parameters...),
                      Arguments&&... arguments) const;

    const Find _find;
    const std::string _name;
    const std::shared_ptr<SimulatedPort> _port;
    mutable std::mutex _mutex;
    /// The device of the last attempt to connect.
    std::weak_ptr<SimulatedKesto::Impl> _device;
};

} // namespace KesDriver
