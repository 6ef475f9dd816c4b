#include <KesDevice/AuxDC.h>

#include <KesDevice/Kesto.h>
#include <KesDriver/OutputCheck.h>

namespace KesDevice {

Kes::Result AuxDC::set(bool enable, double volts)
{
    if (auto result = KesDriver::checkAuxDC(volts); !result)
        return result;
    ++_changes;
    auto result = _kesto._sendAuxDC(enable, volts);
    if (result)
        _set(enable, volts);
    return result;
}

void AuxDC::_set(bool enable, double volts)
{
    Kes::SignalGate::Guard gate;
    ++_changes;
    _volts = volts;
    if (_enabled.exchange(enable) != enable)
        signalEnableChanged.emit(enable);
}

void AuxDC::_follow(bool enable, unsigned change)
{
    Kes::SignalGate::Guard gate;
    if (_changes == change && _enabled.exchange(enable) != enable)
        signalEnableChanged.emit(enable);
}

} // namespace KesDevice
