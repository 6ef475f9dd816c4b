// The part of a configuration that works with all of its devices at once.

#include <KesDevice/HardwareManager.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/WaitCondition.h>
#include <KesCommon/Worker.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/detail/DeviceStateMachine.h>
#include <KesDevice/detail/FaultStopper.h>
#include <KesDevice/detail/HardwareStatus.h>
#include <KesDevice/detail/KestoFields.h>
#include <KesDevice/detail/OperationTurn.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace KesDevice {

namespace {

using StateLock = std::lock_guard<std::mutex>;

/// The error with the device's name in front, unless it names the device already.
std::shared_ptr<Kes::ObjectError> nameKesto(const Kesto& kesto, const Kes::Result& result)
{
    const auto text = Kes::ObjectErrorHelper::toDisplayString({result.getError()});
    if (text.find(kesto.getAddress().to_string()) != std::string::npos)
        return result.getError();
    return Kes::TextError::create(text.empty() ? kesto.toDisplayString()
                                               : kesto.toDisplayString() + ": " + text);
}

/// Why the device does not work; success when it does.
Kes::Result getFailure(const Kesto& kesto)
{
    if (kesto.getState() == DeviceState::Working)
        return true;
    const auto reason = kesto.getStateReason();
    return Kes::Result::failure(reason.empty() ? lng::HardwareManager::get("Errors.Kesto.outputEnded")
                                               : reason);
}

/// Or is about to have one.
bool hasConnection(const std::shared_ptr<Kesto>& kesto)
{
    return kesto->isConnected() || kesto->getState() == DeviceState::Connecting;
}

Kes::Result prepareKesto(Kesto& kesto)
{
    const bool wasConnected = kesto.isConnected();
    auto result = kesto.updateState();
    // A device that was switched off and on again is found out only now.
    return !result && wasConnected ? kesto.connect() : result;
}

/// Set for its scope.
class FlagScope {
public:
    explicit FlagScope(std::atomic<bool>& flag) : _flag(flag) { _flag = true; }
    ~FlagScope() { _flag = false; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    std::atomic<bool>& _flag;
};

} // namespace

/// What the devices answer, each asked on a thread of its own, so that one that does not answer keeps no
/// other one waiting.
class HardwareManager::Results {
public:
    Results(const Kestos& kestos, const Operation& operation)
        : _results(kestos.size(), Kes::Result(false)), _pending(kestos.size())
    {
        for (std::size_t i = 0; i < kestos.size(); ++i) {
            auto ask = [this, i, kesto = kestos[i], operation] { _ask(i, *kesto, operation); };
            if (auto worker = Kes::Worker::tryStart("KesDevice_Op", ask))
                _workers.push_back(std::move(*worker));
            else // Late is better than never: it may be the one that switches off.
                ask();
        }
    }

    bool waitUntil(Kes::WaitCondition::TimePoint time)
    {
        std::unique_lock lock(_mutex);
        return _answered.waitUntil(lock, time, [this] { return _pending == 0; });
    }

    /// One for each device, in their order.
    std::vector<Kes::Result> take()
    {
        for (auto& worker : _workers)
            worker.wait();
        return std::move(_results);
    }

private:
    void _ask(std::size_t i, Kesto& kesto, const Operation& operation)
    {
        Kes::Result result = false;
        try {
            result = operation(kesto);
        } catch (...) {
            result = Kes::Result::failure(Kes::getCurrentExceptionText());
        }
        std::lock_guard lock(_mutex);
        _results[i] = std::move(result);
        --_pending;
        _answered.notifyAll();
    }

    std::mutex _mutex;
    Kes::WaitCondition _answered;
    std::vector<Kes::Result> _results;
    std::size_t _pending;
    std::vector<Kes::Worker> _workers;
};

/// Only with the turn.
std::vector<Kes::Result> HardwareManager::_onEach(const Kestos& kestos, const Status& status,
                                                  const Operation& operation)
{
    Results results(kestos, operation);
    if (!results.waitUntil(status.getDue()))
        status.show();
    return results.take();
}

/// Success, or a failure with one inner error for each device that has failed, in the order of the devices.
Kes::Result HardwareManager::_toResult(const char* key, const Kestos& kestos,
                                       const std::vector<Kes::Result>& results)
{
    Kes::ObjectError::List errors;
    for (std::size_t i = 0; i < kestos.size(); ++i)
        if (!results[i])
            errors.push_back(nameKesto(*kestos[i], results[i]));
    if (errors.empty())
        return true;
    return Kes::TextError::create(lng::HardwareManager::get(key), errors);
}

HardwareManager::ToldByResults::ToldByResults(HardwareManager& hardware)
    : ToldByResults(hardware._kestos.lease())
{}

HardwareManager::ToldByResults::ToldByResults(const Kestos& kestos)
{
    for (const auto& kesto : kestos)
        _devices.emplace_back(kesto);
}

HardwareManager::ToldByResults::~ToldByResults() = default;

void HardwareManager::ToldByResults::_setTold(std::size_t number)
{
    _devices[number].setTold();
}

void HardwareManager::ToldByResults::_end()
{
    _devices.clear();
}

Kes::Result HardwareManager::prepare()
{
    const OperationTurn::Hold turn(*_turn);
    if (_isRetired)
        return Kes::Result::failure(lng::HardwareManager::get("Errors.General.replaced"));
    const auto kestos = _kestos.lease();
    std::string addresses;
    for (const auto& kesto : kestos)
        addresses += (addresses.empty() ? "" : ", ") + kesto->getAddress().to_string();
    const Status status(*this,
                        Kes::StringHelper::format(lng::HardwareManager::get("Status.connecting"), addresses));
    ToldByResults told(kestos);
    auto results = _onEach(kestos, status, prepareKesto);
    for (std::size_t i = 0; i < kestos.size(); ++i) {
        if (results[i] && !kestos[i]->isConnected())
            results[i] = kestos[i]->_refusal();
        // A device with a fault is connected; the start says why it refuses, if there is one.
        if (!results[i])
            told._setTold(i);
    }
    return _toResult("Errors.General.prepare", kestos, results);
}

Kes::Result HardwareManager::_checkStart(const Kestos& kestos) const
{
    const char* error = _isRetired       ? "Errors.General.replaced"
                        : _running       ? "Errors.General.alreadyRunning"
                        : kestos.empty() ? "Errors.General.noKestos"
                                         : nullptr;
    if (!error)
        return true;
    return Kes::TextError::create(lng::HardwareManager::get("Errors.General.startWorkingMode"),
                                  {Kes::TextError::create(lng::HardwareManager::get(error))});
}

Kes::Result HardwareManager::startWorkingMode()
{
    // What a fault of the last run has stopped must not stop this one.
    _faultStopper->wait();
    const OperationTurn::Hold turn(*_turn);
    const auto kestos = _kestos.lease();
    if (auto result = _checkStart(kestos); !result)
        return result;
    const Status status(*this, lng::HardwareManager::get("Status.starting"));
    ToldByResults told(kestos);
    auto results = _onEach(kestos, status, [](Kesto& kesto) { return kesto.startWorkingMode(); });
    if (_enterRunning(kestos)) {
        told._end();
        _emitRunning(true);
        return true;
    }
    for (std::size_t i = 0; i < kestos.size(); ++i)
        if (results[i])
            results[i] = getFailure(*kestos[i]);
    const auto stops = _onEach(kestos, status, [](Kesto& kesto) { return kesto.stopWorkingMode(); });
    for (std::size_t i = 0; i < kestos.size(); ++i) {
        if (results[i])
            results[i] = stops[i];
        if (!results[i])
            told._setTold(i);
    }
    auto result = _toResult("Errors.General.startWorkingMode", kestos, results);
    return result ? Kes::Result::failure(lng::HardwareManager::get("Errors.General.replaced")) : result;
}

/// Looks once more at all devices at one moment: one may have failed while another was being switched on.
bool HardwareManager::_enterRunning(const Kestos& kestos)
{
    const StateLock lock(DeviceStateMachine::getMutex());
    const bool isWorking = !_isRetired && std::all_of(kestos.begin(), kestos.end(), [](const auto& kesto) {
        return kesto->_fields->machine.getState() == DeviceState::Working;
    });
    _running = isWorking;
    return isWorking;
}

Kes::Result HardwareManager::checkOutput() const
{
    const auto kestos = _kestos.lease();
    std::vector<Kes::Result> results;
    for (const auto& kesto : kestos)
        results.push_back(getFailure(*kesto));
    // Asked behind the devices, which are ready before the output counts as not running.
    for (std::size_t i = 0; i < kestos.size() && _isStopping; ++i)
        if (kestos[i]->getState() == DeviceState::Ready)
            results[i] = true;
    return _running ? _toResult("Errors.General.outputFailed", kestos, results) : Kes::Result(true);
}

Kes::Result HardwareManager::stopWorkingMode()
{
    const OperationTurn::Hold turn(*_turn);
    return _stop();
}

/// Only with the turn.
Kes::Result HardwareManager::_stop()
{
    if (!_running)
        return true;
    const FlagScope stopping(_isStopping);
    const auto kestos = _kestos.lease();
    std::vector<Kes::Result> results;
    {
        const Status status(*this, lng::HardwareManager::get("Status.stopping"));
        results = _onEach(kestos, status, [](Kesto& kesto) { return kesto.stopWorkingMode(); });
    }
    if (_running.exchange(false))
        _emitRunning(false);
    return _toResult("Errors.General.stopWorkingMode", kestos, results);
}

Kes::Result HardwareManager::disconnect()
{
    const Status status(*this, lng::HardwareManager::get("Status.disconnecting"));
    const auto kestos = _kestos.lease();
    if (std::any_of(kestos.begin(), kestos.end(), hasConnection))
        status.show();
    // Who waits for a device that does not answer continues at once, and gives the turn free.
    if (!_running)
        for (const auto& kesto : kestos)
            kesto->disconnect();
    const OperationTurn::Hold turn(*_turn);
    auto result = _stop();
    for (const auto& kesto : _kestos.lease())
        kesto->disconnect();
    return result;
}

void HardwareManager::refuse()
{
    if (!_isRetired.exchange(true))
        Status::endAll(*this);
    for (const auto& kesto : _kestos.lease())
        kesto->_refuse();
}

void HardwareManager::retire()
{
    refuse();
    (void)disconnect();
    for (const auto& kesto : _kestos.lease())
        kesto->_retire();
}

} // namespace KesDevice
