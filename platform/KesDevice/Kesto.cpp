#include <KesDevice/Kesto.h>

#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/detail/KestoFields.h>
#include <KesDevice/detail/KestoPlausibility.h>
#include <KesDriver/ConnectionError.h>
#include <KesDriver/OutputCheck.h>
#include <KesDriver/Refusal.h>

#include <chrono>
#include <utility>

namespace KesDevice {

using namespace KesDriver;

namespace {

using StateLock = std::lock_guard<std::mutex>;

/// How long a sequence waits for the report of the end of the one before.
constexpr std::chrono::milliseconds longestTelling{500};

} // namespace

std::shared_ptr<Kesto> Kesto::create(const Address& address, std::unique_ptr<IKestoLink> link)
{
    std::shared_ptr<Kesto> kesto(new Kesto(address, std::move(link)));
    kesto->_link->setReceiver(std::shared_ptr<IReportReceiver>(kesto, kesto.get()));
    return kesto;
}

Kesto::Kesto(const Address& address, std::unique_ptr<IKestoLink> link)
    : _address(address), _auxDC(*this), _link(std::move(link)), _fields(std::make_unique<Fields>())
{
    signalReport.setExceptionHandler([this](const std::string& text) {
        const StateLock lock(DeviceStateMachine::getMutex());
        _fields->isReportRefused = true;
        _fields->refusal = text;
    });
    signalOperationErrorChanged.setExceptionHandler(
        [this](const std::string& text) { signalNotice.emit(text.c_str()); });
}

Kesto::~Kesto() = default;

KestoIdentity Kesto::getIdentity() const
{
    const StateLock lock(DeviceStateMachine::getMutex());
    return _fields->identity;
}

std::string Kesto::toDisplayString() const
{
    return getIdentifer().toDisplayString() + " (" + _address.to_string() + ')';
}

bool Kesto::isSimulated() const
{
    return _link->isSimulated();
}

OutputLimits Kesto::getLimits() const
{
    const StateLock lock(DeviceStateMachine::getMutex());
    return _fields->limits;
}

DeviceState Kesto::getState() const
{
    const StateLock lock(DeviceStateMachine::getMutex());
    return _fields->machine.getState();
}

std::string Kesto::getStateReason() const
{
    const StateLock lock(DeviceStateMachine::getMutex());
    return _fields->machine.getReason();
}

Kes::Nullable<std::string> Kesto::getOperationError() const
{
    const StateLock lock(DeviceStateMachine::getMutex());
    return _fields->machine.getOperationError();
}

bool Kesto::isConnected() const
{
    const StateLock lock(DeviceStateMachine::getMutex());
    return _isConnectedNow();
}

bool Kesto::_isConnectedNow() const
{
    return _fields->connection != 0 && _fields->machine.getState() != DeviceState::Connecting;
}

unsigned Kesto::_getEpoch() const
{
    const StateLock lock(DeviceStateMachine::getMutex());
    return _fields->machine.getEpoch();
}

std::string Kesto::_getText(const char* key) const
{
    return Kes::StringHelper::format(lng::HardwareManager::get(key), toDisplayString());
}

Kes::Result Kesto::_failure(const char* key) const
{
    return Kes::Result::failure(_getText(key));
}

Kes::Result Kesto::_refusal() const
{
    if (const auto reason = getStateReason(); !reason.empty())
        return Kes::Result::failure(reason);
    switch (getState()) {
    case DeviceState::Ready:
        return _failure("Errors.Kesto.switchedOff");
    case DeviceState::Working:
        return _failure("Errors.Kesto.switchedOn");
    default:
        return _failure("Errors.Kesto.notConnected");
    }
}

// Working mode

Kes::Result Kesto::startWorkingMode()
{
    ToldByResult told(shared_from_this());
    unsigned epoch = 0;
    unsigned stops = 0;
    bool isReady = false;
    {
        std::unique_lock lock(DeviceStateMachine::getMutex());
        _fields->changed.wait(lock, [this] { return _fields->stopsPending == 0; });
        epoch = _fields->machine.getEpoch();
        stops = _fields->stopsBegun;
        isReady = _fields->machine.getState() == DeviceState::Ready;
        _fields->isSwitchedOn |= isReady;
    }
    if (!isReady) {
        told.setTold();
        return _refusal();
    }
    auto result = _ask([](IKestoLink& link) { return link.startWorkingMode(); });
    if (!result) {
        told.setTold();
        if (getRefusalCode(result) == RefusalCode::Fault)
            _applyRefusal(result, epoch);
        return result;
    }
    {
        const StateLock lock(DeviceStateMachine::getMutex());
        auto& machine = _fields->machine;
        const bool isCurrent = machine.getEpoch() == epoch && _fields->stopsBegun == stops;
        if (isCurrent && machine.getState() == DeviceState::Ready)
            machine.change(DeviceState::Working);
        if (isCurrent && machine.getState() == DeviceState::Working)
            return true;
    }
    // It has failed, or has been stopped, while it was being switched on.
    told.setTold();
    auto refusal = _refusal();
    (void)stopWorkingMode();
    return refusal;
}

Kes::Result Kesto::stopWorkingMode()
{
    ToldByResult told(shared_from_this());
    unsigned epoch = 0;
    {
        const StateLock lock(DeviceStateMachine::getMutex());
        if (!_isConnectedNow())
            return true;
        epoch = _fields->machine.getEpoch();
    }
    auto result = _ask([&](IKestoLink& link) { return _switchOff(link, epoch); });
    // Without a connection it switches off by itself; a loss is reported as such.
    if (result || isConnectionError(result))
        return true;
    told.setTold();
    _distrust(epoch, _getText("Errors.Kesto.disobeys"), LetGo::AtOnce);
    return result;
}

Kes::Result Kesto::_switchOff(IKestoLink& link, unsigned epoch)
{
    {
        const StateLock lock(DeviceStateMachine::getMutex());
        _fields->ends.beginEnd();
        ++_fields->stopsBegun;
        ++_fields->stopsPending;
    }
    const Fields::UnderWay stopping(*_fields, _fields->stopsPending);
    auto result = link.stopWorkingMode();
    const StateLock lock(DeviceStateMachine::getMutex());
    auto& machine = _fields->machine;
    if (!result || machine.getEpoch() != epoch)
        return result;
    _fields->isSwitchedOn = false;
    if (machine.getState() == DeviceState::Working)
        machine.change(DeviceState::Ready);
    return result;
}

// Outputs

Kes::Result Kesto::setOutputs(const OutputState& outputs)
{
    auto result = checkOutputs(outputs, getLimits());
    return result ? _ask([&](IKestoLink& link) { return link.setOutputs(outputs); }) : result;
}

Kes::Result Kesto::_sendSequence(const OutputSequence& sequence,
                                 Kes::Result (IKestoLink::*send)(const OutputSequence&))
{
    if (auto result = checkSequence(sequence, getLimits()); !result)
        return result;
    {
        std::unique_lock lock(DeviceStateMachine::getMutex());
        _fields->changed.waitFor(lock, longestTelling, [this] { return !_fields->ends.isBeingTold(); });
        // Before it is sent: the first step may be reported before the answer is there.
        _fields->filter.expectSteps(sequence.size());
        _fields->ends.send();
    }
    auto result = _ask([&](IKestoLink& link) { return (link.*send)(sequence); });
    if (!result) {
        const StateLock lock(DeviceStateMachine::getMutex());
        _fields->ends.takeBack();
    }
    return result;
}

Kes::Result Kesto::runSequence(const OutputSequence& sequence)
{
    return _sendSequence(sequence, &IKestoLink::runSequence);
}

Kes::Result Kesto::armSequence(const OutputSequence& sequence)
{
    return _sendSequence(sequence, &IKestoLink::armSequence);
}

Kes::Result Kesto::startArmed(const StartMoment& moment)
{
    return _ask([&](IKestoLink& link) { return link.startArmed(moment); });
}

Kes::Result Kesto::stopOutputs()
{
    unsigned epoch = 0;
    {
        const StateLock lock(DeviceStateMachine::getMutex());
        if (!_isConnectedNow())
            return true;
        _fields->ends.beginEnd();
        epoch = _fields->machine.getEpoch();
    }
    auto result = _ask([](IKestoLink& link) { return link.stopOutputs(); });
    if (!result && !isConnectionError(result))
        _distrust(epoch, _getText("Errors.Kesto.disobeys"), LetGo::AtOnce);
    return result;
}

template <typename Answer>
Kes::Result Kesto::_askFor(Answer& answer, Kes::Result (IKestoLink::*question)(Answer&))
{
    const unsigned epoch = _getEpoch();
    auto result = _ask([&](IKestoLink& link) { return (link.*question)(answer); });
    if (!result || KestoPlausibility::isPlausible(answer))
        return result;
    _distrust(epoch, _getText("Errors.Kesto.nonsense"), LetGo::StopFirst);
    return _failure("Errors.Kesto.nonsense");
}

Kes::Result Kesto::readClock(ClockReading& reading)
{
    return _askFor(reading, &IKestoLink::readClock);
}

Kes::Result Kesto::readTime(DeviceTime& time)
{
    return _askFor(time, &IKestoLink::readTime);
}

void Kesto::_setFaultStopper(std::weak_ptr<FaultStopper> stopper)
{
    const StateLock lock(DeviceStateMachine::getMutex());
    _fields->faultStopper = std::move(stopper);
}

} // namespace KesDevice
