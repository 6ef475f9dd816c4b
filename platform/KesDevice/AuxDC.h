#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesCommon/Signal.h>

#include <atomic>

namespace KesDevice {

class Kesto;

/// The auxiliary direct-voltage output of a device, which feeds the relay under test. Owned by its device. It
/// is no part of working mode: switching the amplifiers off leaves it on, the end of the connection does not.
class KES_EXPORT AuxDC {
public:
    /// The enable state has changed. Emitted on the thread that changed it: a device thread or the caller's.
    Kes::Signal<void(bool)> signalEnableChanged;

    /// As it was set, or as the device has reported since. Any thread.
    bool getEnable() const { return _enabled; }
    /// In volts, 12 to 300; 220 at first. Any thread.
    double getVolts() const { return _volts; }

    /// Takes effect on the device at once when it is connected, else when it connects. A voltage outside the
    /// range is refused; after a failure nothing has changed. Asks a connected device: any thread but the GUI
    /// thread then.
    Kes::Result set(bool enable, double volts);

private:
    friend class Kesto;
    explicit AuxDC(Kesto& kesto) : _kesto(kesto) {}
    void _set(bool enable, double volts);
    /// Applies the device's state, unless it was changed since `change` was read.
    void _follow(bool enable, unsigned change);
    unsigned _getChange() const { return _changes; }

    Kesto& _kesto;
    std::atomic<unsigned> _changes{0};
    std::atomic<bool> _enabled{false};
    std::atomic<double> _volts{220.0};
};

} // namespace KesDevice
