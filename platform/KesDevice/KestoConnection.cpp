// The part of a device that connects, asks and disconnects.

#include <KesDevice/Kesto.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/SignalGate.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/detail/AddressHold.h>
#include <KesDevice/detail/KestoFields.h>
#include <KesDevice/detail/KestoPlausibility.h>
#include <KesDriver/ConnectionError.h>

#include <chrono>
#include <optional>
#include <utility>

namespace KesDevice {

using namespace KesDriver;

namespace {

constexpr std::size_t longestStateText = 300;

std::string getReason(const KestoState& state)
{
    return state.error.empty() ? lng::HardwareManager::get("Errors.Kesto.notReady")
                               : KestoPlausibility::correctText(state.error, longestStateText);
}

} // namespace

Kes::Result Kesto::connect()
{
    std::shared_ptr<Attempt> attempt;
    unsigned epoch = 0;
    {
        std::unique_lock lock(DeviceStateMachine::getMutex());
        while (!attempt) {
            if (const auto other = _fields->attempt) {
                _fields->changed.wait(lock, [&] { return other->isOver; });
                return other->result;
            }
            if (_isConnectedNow())
                return true;
            if (_fields->isRetired)
                break;
            if (_fields->endings > 0)
                _fields->changed.wait(lock, [this] { return _fields->endings == 0; });
            else
                attempt = std::make_shared<Attempt>();
        }
        if (attempt) {
            _fields->attempt = attempt;
            epoch = _fields->machine.turnEpoch();
            const auto reason = _fields->machine.getReason();
            _fields->machine.change(DeviceState::Connecting, reason);
        }
    }
    if (!attempt)
        return _failure("Errors.Kesto.disconnected");
    try {
        return _attempt(epoch);
    } catch (...) {
        _giveUp(*attempt);
        throw;
    }
}

/// An attempt that has thrown, for want of memory: nobody continues to wait for it.
void Kesto::_giveUp(Attempt& attempt)
{
    const auto isOver = [&] {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        return attempt.isOver;
    };
    if (isOver())
        return;
    _link->disconnect();
    std::lock_guard lock(DeviceStateMachine::getMutex());
    attempt.isOver = true;
    _fields->attempt.reset();
    _fields->connection = 0;
    _fields->machine.change(DeviceState::Absent, {});
    _fields->changed.notifyAll();
}

/// The rest of an attempt that has the device for itself.
Kes::Result Kesto::_attempt(unsigned epoch)
{
    const Kes::SignalGate::Release gate;
    const unsigned auxDCChange = _auxDC._getChange();
    KestoState state;
    std::optional<AddressHold> hold(AddressHold::take(_address, [&] { return _isAttemptWanted(epoch); }));
    Kes::Result result = _isAttemptWanted(epoch);
    if (result)
        result = _open(epoch, state);
    const auto disconnected = _failure("Errors.Kesto.disconnected");
    std::shared_ptr<Attempt> attempt;
    ConnectionNumber connection = 0;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        attempt = _fields->attempt;
        // Whoever disconnects meanwhile has the last word.
        if (_fields->machine.getEpoch() != epoch || (!result && _fields->isRetired))
            result = disconnected;
        else if (!attempt->failure.empty())
            result = Kes::Result::failure(attempt->failure);
        if (result) {
            _fields->knownFault.clear();
            _fields->machine.change(state.isReady ? DeviceState::Ready : DeviceState::Faulty,
                                    state.isReady ? std::string() : getReason(state));
            connection = _fields->connection;
        } else {
            _fields->connection = 0;
            if (_fields->machine.getEpoch() == epoch)
                _fields->machine.change(DeviceState::Absent,
                                        Kes::ObjectErrorHelper::toDisplayString({result.getError()}));
        }
    }
    if (!result)
        _link->disconnect();
    else if (attempt->fault)
        _onAvary(connection, *attempt->fault);
    hold.reset();
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        attempt->result = result;
        attempt->isOver = true;
        _fields->attempt.reset();
        _fields->changed.notifyAll();
    }
    if (result && _auxDC._getChange() != auxDCChange)
        (void)_sendAuxDC(_auxDC.getEnable(), _auxDC.getVolts());
    else if (result)
        _auxDC._follow(state.isAuxDCEnabled, auxDCChange);
    _emitOperationError();
    return result;
}

bool Kesto::_isAttemptWanted(unsigned epoch) const
{
    const std::lock_guard lock(DeviceStateMachine::getMutex());
    return _fields->machine.getEpoch() == epoch && !_fields->isRetired;
}

Kes::Result Kesto::_open(unsigned epoch, KestoState& state)
{
    auto result = _openLink(epoch);
    if (result)
        result = _identify();
    if (result)
        result = _readLimits();
    if (result)
        result = _link->setAuxDC(_auxDC.getEnable(), _auxDC.getVolts());
    if (result)
        result = _readState(state);
    return result;
}

Kes::Result Kesto::_openLink(unsigned epoch)
{
    ConnectionNumber connection = 0;
    if (auto result = _link->connect(connection); !result)
        return result;
    std::lock_guard lock(DeviceStateMachine::getMutex());
    _fields->filter = {};
    if (_fields->machine.getEpoch() == epoch)
        _fields->connection = connection;
    return _fields->connection == connection;
}

Kes::Result Kesto::_identify()
{
    KestoIdentity identity;
    if (auto result = _link->identify(identity); !result)
        return result;
    if (!KestoPlausibility::isPlausible(identity.identifer))
        return _failure("Errors.Kesto.nonsense");
    std::lock_guard lock(DeviceStateMachine::getMutex());
    _fields->identity = KestoPlausibility::correct(std::move(identity));
    return true;
}

Kes::Result Kesto::identify(IKestoNetwork& network, const Address& address, KestoIdentity& identity,
                            bool& isSimulated)
{
    const auto hold = AddressHold::take(address);
    const auto link = network.createLink(address);
    ConnectionNumber connection = 0;
    auto result = link->connect(connection);
    if (result)
        result = link->identify(identity);
    link->disconnect();
    if (result && !KestoPlausibility::isPlausible(identity.identifer))
        return Kes::Result::failure(Kes::StringHelper::format(
            lng::HardwareManager::get("Errors.Kesto.nonsense"), address.to_string()));
    identity = KestoPlausibility::correct(std::move(identity));
    isSimulated = link->isSimulated();
    return result;
}

Kes::Result Kesto::_readLimits()
{
    OutputLimits limits;
    if (auto result = _link->readLimits(limits); !result)
        return result;
    if (limits.releaseTime > KestoPlausibility::longestReleaseTime)
        return Kes::Result::failure(
            Kes::StringHelper::format(lng::HardwareManager::get("Errors.Kesto.slowRelease"),
                                      toDisplayString(), std::to_string(limits.releaseTime.count()),
                                      std::to_string(KestoPlausibility::longestReleaseTime.count())));
    std::lock_guard lock(DeviceStateMachine::getMutex());
    _fields->limits = KestoPlausibility::correct(limits);
    return true;
}

Kes::Result Kesto::_readState(KestoState& state)
{
    {
        // What it has reported before is in the answer.
        std::lock_guard lock(DeviceStateMachine::getMutex());
        _fields->attempt->fault.reset();
    }
    auto result = _link->readState(state);
    if (result && !KestoPlausibility::isPlausible(state))
        return _failure("Errors.Kesto.nonsense");
    return result;
}

Kes::Result Kesto::updateState()
{
    if (!isConnected())
        return connect();
    const unsigned epoch = _getEpoch();
    const unsigned auxDCChange = _auxDC._getChange();
    KestoState state;
    bool isAnswered = false;
    auto result = _ask([&](IKestoLink& link) {
        auto answer = link.readState(state);
        isAnswered = answer;
        return answer;
    });
    if (isAnswered && !KestoPlausibility::isPlausible(state)) {
        result = _failure("Errors.Kesto.nonsense");
        _distrust(epoch, result.getError()->getMessage(), LetGo::StopFirst);
    } else if (isAnswered) {
        _applyState(state, epoch, auxDCChange);
    } else if (!isConnectionError(result)) {
        _applyRefusal(result, epoch);
    }
    return result;
}

/// The device is not ready, as its answer says.
void Kesto::_applyRefusal(const Kes::Result& refusal, unsigned epoch)
{
    _applyState(
        {false, _auxDC.getEnable(), 0.0, Kes::ObjectErrorHelper::toDisplayString({refusal.getError()})},
        epoch, _auxDC._getChange());
}

void Kesto::_applyState(const KestoState& state, unsigned epoch, unsigned auxDCChange)
{
    bool hasFailed = false;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        auto& machine = _fields->machine;
        if (machine.getEpoch() != epoch || !_isConnectedNow())
            return;
        const bool wasFaulty = machine.getState() == DeviceState::Faulty;
        hasFailed = !state.isReady && !wasFaulty;
        if (hasFailed || (!state.isReady && !_fields->knownFault.hasRecord())) {
            machine.change(DeviceState::Faulty, getReason(state));
        } else if (state.isReady && wasFaulty && !_fields->isSwitchedOn) {
            // Not before somebody has switched it off: the outputs of a device that is ready are off.
            machine.change(DeviceState::Ready);
            _fields->knownFault.clear();
        }
    }
    if (hasFailed)
        _stopOthers();
    _auxDC._follow(state.isAuxDCEnabled, auxDCChange);
    _emitOperationError();
}

void Kesto::disconnect()
{
    std::optional<SequenceEvent> end;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        end = _fields->endConnection();
        _fields->knownFault.clear();
        _fields->machine.change(DeviceState::Absent);
        ++_fields->endings;
    }
    // An attempt that waits for its address continues at once.
    AddressHold::notify();
    _endLink(LetGo::AtOnce);
    _emitOperationError();
    _emitEnd(end);
}

void Kesto::_endLink(LetGo how)
{
    const Kes::SignalGate::Release gate;
    const Fields::UnderWay ending(*_fields, _fields->endings);
    if (how == LetGo::StopFirst)
        _safely([this] { (void)_link->stopOutputs(); });
    _link->disconnect();
}

void Kesto::_refuse()
{
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        _fields->isRetired = true;
    }
    AddressHold::notify();
}

void Kesto::_retire()
{
    _refuse();
    disconnect();
}

Kes::Result Kesto::_ask(const std::function<Kes::Result(IKestoLink&)>& question)
{
    unsigned epoch = 0;
    bool isConnected = false;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        epoch = _fields->machine.getEpoch();
        isConnected = _isConnectedNow();
    }
    // Not while it is being connected either: its link says then that there is no connection, and by the time
    // this is heard there may be one, which would be taken for lost.
    if (!isConnected)
        return ConnectionError::failure(_getText("Errors.Kesto.notConnected"));
    auto result = [&] {
        const Kes::SignalGate::Release gate;
        return question(*_link);
    }();
    if (isConnectionError(result))
        _lose(epoch);
    return result;
}

Kes::Result Kesto::_sendAuxDC(bool enable, double volts)
{
    if (!isConnected())
        return true;
    return _ask([=](IKestoLink& link) { return link.setAuxDC(enable, volts); });
}

} // namespace KesDevice
