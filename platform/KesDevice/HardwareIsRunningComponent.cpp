#include <KesDevice/HardwareIsRunningComponent.h>

namespace KesDevice {

HardwareIsRunningComponent& HardwareIsRunningComponent::getInstance()
{
    static HardwareIsRunningComponent instance;
    return instance;
}

void HardwareIsRunningComponent::_changeCount(int by)
{
    Kes::SignalGate::Guard gate;
    const bool wasRunning = isRunning();
    _count += by;
    if (isRunning() != wasRunning)
        signalRunningChanged.emit(isRunning());
}

} // namespace KesDevice
