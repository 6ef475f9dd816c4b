#include <KesProgram/shell/HardwareRunningWatch.h>

#include <KesCommon/SignalGate.h>
#include <KesDevice/HardwareIsRunningComponent.h>

#include <utility>

namespace KesProgram {

HardwareRunningWatch::HardwareRunningWatch(std::function<void(const bool&)> apply)
    : _running(std::move(apply))
{
    auto& hardware = KesDevice::HardwareIsRunningComponent::getInstance();
    // No change is announced between the two, to be overtaken by the older value.
    const Kes::SignalGate::Guard gate;
    _connection = hardware.signalRunningChanged.connect([this](bool running) { _running.set(running); });
    _running.set(hardware.isRunning());
}

HardwareRunningWatch::~HardwareRunningWatch() = default;

} // namespace KesProgram
