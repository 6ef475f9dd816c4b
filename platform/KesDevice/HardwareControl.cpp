#include <KesDevice/HardwareControl.h>

#include <KesCommon/Log.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareControlState.h>
#include <KesDevice/HardwareFile.h>
#include <KesDevice/HardwareManagerText.h>

#include <utility>

namespace KesDevice {

namespace {

using State = HardwareControlState;

std::unique_ptr<HardwareManager> createDefault()
{
    auto hardware = HardwareManager::create();
    (void)hardware->getKestos().addKesto(std::make_unique<Kesto>(HardwareControl::getSimulatedAddress()));
    return hardware;
}

std::unique_ptr<HardwareManager> restoreOrCreate()
{
    std::string error;
    auto hardware = HardwareFile::read(HardwareFile::getPath(), error);
    if (!error.empty())
        KesLog::Log::writeWarn(
            Kes::StringHelper::format(lng::HardwareManager::get("Errors.File.read"), error));
    return hardware ? std::move(hardware) : createDefault();
}

void keep(const HardwareManager& hardware)
{
    if (const auto result = HardwareFile::write(HardwareFile::getPath(), hardware); !result)
        KesLog::Log::writeError(
            Kes::StringHelper::format(lng::HardwareManager::get("Errors.File.write"),
                                      Kes::ObjectErrorHelper::toDisplayString({result.getError()})));
}

} // namespace

Kes::Signal<void(HardwareManager*)> HardwareControl::signalHardwareChanged;

Kesto::Address HardwareControl::getSimulatedAddress()
{
    return Kesto::Address(Kesto::Address::Bytes{127, 0, 0, 1});
}

HardwareManager* HardwareControl::getInstance()
{
    auto& state = State::get();
    if (auto* current = state.getCurrent())
        return current;
    // Made outside the lock, since making it passes the signal gate; when two threads do so, the first one
    // counts.
    state.offerGlobal(restoreOrCreate());
    return state.getCurrent();
}

bool HardwareControl::getEmbeddedMode()
{
    return State::get().isEmbedded();
}

void HardwareControl::setEmbeddedMode(bool embedded)
{
    auto* previous = getInstance();
    Kes::SignalGate::Guard gate;
    State::get().setEmbedded(embedded);
    if (auto* current = getInstance(); current != previous)
        signalHardwareChanged.emit(current);
}

void HardwareControl::setGlobalInstance(std::unique_ptr<HardwareManager> hardware, bool temporary)
{
    if (!hardware)
        return;
    if (!temporary)
        keep(*hardware);
    _replace(std::move(hardware), false);
}

void HardwareControl::setEmbeddedInstance(std::unique_ptr<HardwareManager> hardware, bool)
{
    if (hardware)
        _replace(std::move(hardware), true);
}

void HardwareControl::retire(std::unique_ptr<HardwareManager> hardware)
{
    if (!hardware)
        return;
    hardware->_retire();
    auto& state = State::get();
    state.keepRetired(std::move(hardware));
    state.dropRetired();
}

void HardwareControl::_replace(std::unique_ptr<HardwareManager> hardware, bool embedded)
{
    // First, so that whoever hears of the change finds the devices free.
    auto& state = State::get();
    if (auto* leaving = state.get(embedded))
        leaving->_retire();
    {
        Kes::SignalGate::Guard gate;
        auto* previous = state.exchange(std::move(hardware), embedded);
        signalHardwareChanged.emit(getInstance());
        // Another one only when two threads replace at once.
        if (previous)
            previous->_retire();
    }
    state.dropRetired();
}

std::vector<std::shared_ptr<Kesto>> HardwareControl::_leaseKestos()
{
    (void)getInstance();
    return State::get().leaseKestos();
}

} // namespace KesDevice
