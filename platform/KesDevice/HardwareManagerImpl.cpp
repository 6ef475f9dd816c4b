#include <KesDevice/HardwareManagerImpl.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/ThreadHelper.h>
#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/HardwareManagerText.h>

#include <thread>
#include <utility>

namespace KesDevice {

namespace {

using Kestos = std::vector<std::shared_ptr<Kesto>>;
using Operation = std::function<Kes::Result(Kesto&)>;

/// The error with the device's name in front, unless it names the device already.
std::shared_ptr<Kes::ObjectError> nameKesto(const Kesto& kesto, const Kes::Result& result)
{
    const auto text = Kes::ObjectErrorHelper::toDisplayString({result.getError()});
    if (text.find(kesto.getAddress().to_string()) != std::string::npos)
        return result.getError();
    return Kes::TextError::create(text.empty() ? kesto.toDisplayString()
                                               : kesto.toDisplayString() + ": " + text);
}

} // namespace

HardwareManager::Impl::Status::~Status()
{
    if (_shown)
        _hardware.signalStatusChanged.emit("");
}

void HardwareManager::Impl::Status::show(const std::string& text) const
{
    if (!_hardware.isStatusReported())
        return;
    _shown = true;
    _hardware.signalStatusChanged.emit(text.c_str());
}

HardwareManager::Impl::Impl(HardwareManager& hardware)
    : _hardware(hardware),
      _inserted(hardware._kestos.signalInserted.connect(
          [this](std::size_t, Kesto* const& kesto) { _onInserted(kesto); })),
      _removed(hardware._kestos.signalRemoved.connect(
          [this](std::size_t, Kesto* const& kesto) { _onRemoved(kesto); }))
{
    // Made before the first configuration, it outlives the last one.
    HardwareIsRunningComponent::getInstance();
}

HardwareManager::Impl::Errors HardwareManager::Impl::onEach(const Kestos& kestos, const Operation& operation)
{
    std::vector<Kes::Result> results(kestos.size(), Kes::Result(true));
    if (kestos.size() == 1) {
        results[0] = operation(*kestos[0]);
    } else {
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < kestos.size(); ++i)
            threads.emplace_back([&, i] {
                Kes::ThreadHelper::setCurrentThreadName("KesDevice_Op");
                const OperationTurn::Share share(turn);
                results[i] = operation(*kestos[i]);
            });
        for (auto& thread : threads)
            Kes::ThreadHelper::join(thread);
    }
    Errors errors;
    for (std::size_t i = 0; i < kestos.size(); ++i)
        if (!results[i])
            errors.push_back(nameKesto(*kestos[i], results[i]));
    return errors;
}

Kes::Result HardwareManager::Impl::toResult(const char* key, const Errors& errors)
{
    if (errors.empty())
        return true;
    return Kes::TextError::create(lng::HardwareManager::get(key), errors);
}

Kes::Result HardwareManager::Impl::checkStart(const Kestos& kestos) const
{
    const char* error = isRetired            ? "Errors.General.replaced"
                        : _hardware._running ? "Errors.General.alreadyRunning"
                        : kestos.empty()     ? "Errors.General.noKestos"
                                             : nullptr;
    if (!error)
        return true;
    return toResult("Errors.General.startWorkingMode",
                    {Kes::TextError::create(lng::HardwareManager::get(error))});
}

void HardwareManager::Impl::setRunning(bool running)
{
    Kes::SignalGate::Guard gate;
    if (_hardware._running.exchange(running) == running)
        return;
    countRunning(running ? 1 : -1);
    _hardware.signalRunningChanged.emit(running);
}

void HardwareManager::Impl::countRunning(int by)
{
    HardwareIsRunningComponent::getInstance()._changeCount(by);
}

void HardwareManager::Impl::_onInserted(Kesto* kesto)
{
    auto& connections = _connections[kesto];
    connections.emplace_back(
        kesto->signalAvary.connect([this, kesto](KesDriver::KesAvary& avary) { _onAvary(kesto, avary); }));
    connections.emplace_back(kesto->signalNotice.connect(
        [this, kesto](const char* text) { _hardware.signalKestoState.emit(kesto, text); }));
}

void HardwareManager::Impl::_onRemoved(Kesto* kesto)
{
    _connections.erase(kesto);
}

void HardwareManager::Impl::_onAvary(Kesto* kesto, KesDriver::KesAvary& avary)
{
    if (_hardware.isStopOnFault() && _hardware.isOutputRunning())
        _stopOthers(kesto);
    _hardware.signalAvary.emit(avary);
}

/// Waits neither for the turn, since an operation may be waiting for a device that does not answer, nor for
/// the devices: the fault is told meanwhile.
void HardwareManager::Impl::_stopOthers(const Kesto* faulty)
{
    for (const auto& kesto : _hardware._kestos.lease())
        if (kesto.get() != faulty && kesto->isConnected())
            _stops.emplace_back([this, kesto] { _stop(*kesto); });
}

void HardwareManager::Impl::_stop(Kesto& kesto)
{
    Kes::ThreadHelper::setCurrentThreadName("KesDevice_Stop");
    if (const auto result = kesto.stopOutputs(); !result)
        _hardware.signalKestoState.emit(
            &kesto, Kes::StringHelper::format(lng::HardwareManager::get("Errors.General.stopOnFault"),
                                              Kes::ObjectErrorHelper::toDisplayString({result.getError()}))
                        .c_str());
}

void HardwareManager::Impl::waitForStops()
{
    std::vector<std::thread> stops;
    {
        Kes::SignalGate::Guard gate;
        stops.swap(_stops);
    }
    for (auto& stop : stops)
        if (stop.get_id() != std::this_thread::get_id())
            Kes::ThreadHelper::join(stop);
        else
            stop.detach(); // Called from a slot of its report, which is the last thing that it does.
}

} // namespace KesDevice
