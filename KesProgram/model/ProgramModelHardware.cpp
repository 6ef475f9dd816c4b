// The part of the model that deals with the hardware configuration.

#include <KesProgram/model/ProgramModel.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesDevice/HardwareControl.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesProgram/model/AvaryMessage.h>
#include <KesProgram/text/Program.h>

namespace KesProgram {

KesDevice::HardwareManager* ProgramModel::getHardware()
{
    return _shareHardware().get();
}

ProgramModel::SharedHardware ProgramModel::_shareHardware()
{
    if (!usesLocalHardware())
        return KesDevice::HardwareControl::share();
    if (auto hardware = _shareLocalHardware())
        return hardware;
    // Not only one thread may find none.
    _offerLocalHardware(_createProgramHardwareManager());
    return _shareLocalHardware();
}

ProgramModel::SharedHardware ProgramModel::_shareSwitchedOn()
{
    {
        std::lock_guard lock(_hardwareMutex);
        if (_runHardware)
            return _runHardware;
    }
    return _shareHardware();
}

/// A run on another thread continues with the configuration that it has just asked for, whoever replaces it.
void ProgramModel::_holdHardware()
{
    auto current = _shareHardware();
    std::vector<SharedHardware> released;
    std::lock_guard lock(_hardwareMutex);
    if (!_isHardwareHeld)
        released.swap(_heldHardware);
    _heldHardware.push_back(std::move(current));
}

void ProgramModel::_setIsHardwareHeld(bool held)
{
    std::vector<SharedHardware> released;
    std::lock_guard lock(_hardwareMutex);
    _isHardwareHeld = held;
    if (held)
        return;
    released.swap(_heldHardware);
    if (!released.empty())
        _heldHardware.push_back(released.back());
    released.push_back(std::move(_runHardware));
}

void ProgramModel::setHardware(std::unique_ptr<KesDevice::HardwareManager>& hardware, bool flag)
{
    if (!usesLocalHardware()) {
        if (KesDevice::HardwareControl::getEmbeddedMode())
            KesDevice::HardwareControl::setEmbeddedInstance(std::move(hardware), flag);
        else
            KesDevice::HardwareControl::setGlobalInstance(std::move(hardware), flag);
        return;
    }
    const auto old = _exchangeLocalHardware(std::move(hardware));
    // What the old one says of its end is heard before the change or not at all.
    const Kes::SignalGate::Guard gate;
    // First the outputs, then the words.
    KesDevice::HardwareControl::retire(old);
    _onHardwareChangedImpl(getHardware());
}

std::unique_ptr<KesDevice::HardwareManager> ProgramModel::_createProgramHardwareManager()
{
    auto hardware = KesDevice::HardwareManager::create();
    hardware->fillFrom(*KesDevice::HardwareControl::getInstance());
    return hardware;
}

void ProgramModel::_setLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware)
{
    KesDevice::HardwareControl::retire(_exchangeLocalHardware(std::move(hardware)));
}

void ProgramModel::_offerLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware)
{
    auto shared = _adoptLocalHardware(std::move(hardware));
    std::lock_guard lock(_hardwareMutex);
    if (!_localHardware)
        _localHardware.swap(shared);
}

ProgramModel::SharedHardware
ProgramModel::_adoptLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware)
{
    if (hardware) {
        hardware->setIsStopOnFault(true);
        hardware->setIsStatusReported(true);
        hardware->getVirtualChannels().setIsControlGroupsEnabled(true);
        _report(hardware->getKestos().clear());
    }
    return KesDevice::HardwareControl::adopt(std::move(hardware));
}

ProgramModel::SharedHardware
ProgramModel::_exchangeLocalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware)
{
    auto shared = _adoptLocalHardware(std::move(hardware));
    std::lock_guard lock(_hardwareMutex);
    _localHardware.swap(shared);
    return shared;
}

ProgramModel::SharedHardware ProgramModel::_shareLocalHardware() const
{
    std::lock_guard lock(_hardwareMutex);
    return _localHardware;
}

void ProgramModel::_attachHardwareManager()
{
    Kes::SignalGate::Guard gate;
    _holdHardware();
    auto& hardware = *getHardware();
    _hardwareConnections[RunningConnection] =
        hardware.signalRunningChanged.connect([this](bool running) { _onHardwareIsRunningChanged(running); });
    _hardwareConnections[StatusConnection] =
        hardware.signalStatusChanged.connect([this](const char* text) { _onHardwareStatusChanged(text); });
    _hardwareConnections[AvaryConnection] =
        hardware.signalAvary.connect([this](KesDriver::KesAvary& avary) { _onHardwareAvary(avary); });
    _hardwareConnections[KestoStateConnection] = hardware.signalKestoState.connect(
        [this](KesDevice::Kesto* kesto, const char* text) { _onKestoState(kesto, text); });
}

/// Returns when no report of the devices is being heard any more.
void ProgramModel::_leaveHardware()
{
    _globalHardwareConnection.disconnect();
    for (auto& connection : _hardwareConnections)
        connection.disconnect();
}

void ProgramModel::_onHardwareChangedImpl(KesDevice::HardwareManager* hardware)
{
    _attachHardwareManager();
    _runSafely([=, this] { _onHardwareChanged(hardware); });
    signalHardwareChanged.emit();
}

void ProgramModel::_onHardwareIsRunningChanged(bool)
{
    signalCanStartChanged.emit();
}

void ProgramModel::_onHardwareStatusChanged(const char* text)
{
    _setState(text);
}

void ProgramModel::_onHardwareAvary(KesDriver::KesAvary& avary)
{
    _stopRunning();
    signalMessage.emit(_createAvaryMessage(avary));
}

void ProgramModel::_onKestoState(KesDevice::Kesto* kesto, const char* text)
{
    // Such as a device that talks nonsense, and was let go of for that.
    bool isOn = false;
    if (!_runSafely([&] { isOn = _shareHardware()->checkOutput(); }) || !isOn)
        _stopRunning();
    std::string message(text);
    if (kesto)
        message = "[" + kesto->getIdentifer().toDisplayString() + ": " + kesto->getAddress().to_string('.') +
                  "] " + message;
    signalMessage.emit(message);
}

bool ProgramModel::_isSupportedHardwareSync()
{
    return getHardware()->getSyncManager().getActiveMode().isSeqSupported();
}

bool ProgramModel::_checkHardware()
{
    auto& hardware = *getHardware();
    if (hardware.isOutputRunning()) {
        signalMessage.emit(lng::Program::get("Message.errorStartTests"));
        return false;
    }
    if (hardware.getKestos().empty()) {
        signalMessage.emit(lng::Program::get("Message.noKestos"));
        return false;
    }
    if (!_isSupportedHardwareSync()) {
        const char* name = hardware.getSyncManager().getActiveMode().getName();
        signalMessage.emit(std::string(lng::HardwareManager::get("Errors.General.startWorkingMode")) + "\n" +
                           lng::HardwareManager::get("Errors.Sync.modeNotSupportedByTest") + ":\n" +
                           (name ? name : ""));
        return false;
    }
    return true;
}

bool ProgramModel::_onPrepareHardware()
{
    if (!_checkHardware())
        return false;
    const auto hardware = _shareHardware();
    const KesDevice::HardwareManager::ToldByResults told(*hardware);
    auto result = hardware->prepare();
    if (result)
        result = hardware->startWorkingMode();
    if (!_report(result))
        return false;
    std::lock_guard lock(_hardwareMutex);
    _runHardware = hardware;
    return true;
}

void ProgramModel::_onFinishHardware()
{
    const auto hardware = _shareHardware();
    _report(hardware->stopWorkingMode());
    _disconnectOnRequest();
}

bool ProgramModel::_report(const Kes::Result& result)
{
    if (!result)
        signalMessage.emit(Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
    return result;
}

} // namespace KesProgram
