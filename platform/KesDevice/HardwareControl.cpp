#include <KesDevice/HardwareControl.h>

#include <KesCommon/Log.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/detail/HardwareControlState.h>
#include <KesDevice/detail/HardwareFile.h>
#include <KesDevice/detail/Retirement.h>
#include <KesDriver/EmbeddedNetwork.h>

#include <utility>

namespace KesDevice {

namespace {

using State = HardwareControlState;

std::unique_ptr<HardwareManager> createDefault()
{
    auto hardware = HardwareManager::create();
    (void)hardware->addKesto(KesDriver::embeddedAddress);
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

std::shared_ptr<HardwareManager> HardwareControl::share()
{
    auto& state = State::get();
    if (auto current = state.getCurrent())
        return current;
    // Made outside the lock, since making it passes the signal gate; when two threads do so, the first one
    // counts.
    state.offerGlobal(adopt(restoreOrCreate()));
    return state.getCurrent();
}

HardwareManager* HardwareControl::getInstance()
{
    return share().get();
}

std::shared_ptr<KesDriver::IKestoNetwork> HardwareControl::getNetwork()
{
    return State::get().getNetwork();
}

void HardwareControl::setNetwork(std::shared_ptr<KesDriver::IKestoNetwork> network)
{
    State::get().setNetwork(std::move(network));
}

bool HardwareControl::getEmbeddedMode()
{
    return State::get().isEmbedded();
}

void HardwareControl::setEmbeddedMode(bool embedded)
{
    const auto previous = share();
    Kes::SignalGate::Guard gate;
    State::get().setEmbedded(embedded);
    if (const auto current = share(); current != previous)
        signalHardwareChanged.emit(current.get());
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

std::shared_ptr<HardwareManager> HardwareControl::adopt(std::unique_ptr<HardwareManager> hardware)
{
    // The state waits for configurations that are ending when the process ends.
    State::get();
    return Retirement::share(std::move(hardware));
}

void HardwareControl::retire(std::shared_ptr<HardwareManager> hardware)
{
    Retirement::begin(std::move(hardware));
}

void HardwareControl::waitForRetired()
{
    Retirement::wait();
}

void HardwareControl::_replace(std::unique_ptr<HardwareManager> hardware, bool embedded)
{
    Kes::SignalGate::Guard gate;
    const auto previous = State::get().exchange(adopt(std::move(hardware)), embedded);
    // First the outputs, then the words.
    retire(previous);
    signalHardwareChanged.emit(share().get());
}

} // namespace KesDevice
