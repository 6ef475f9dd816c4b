// The part of a device that hears what the device reports by itself, and reports it to others.

#include <KesDevice/Kesto.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommon/SignalGate.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>
#include <KesDevice/detail/FaultStopper.h>
#include <KesDevice/detail/KestoFields.h>
#include <KesDevice/detail/KestoPlausibility.h>

#include <optional>
#include <type_traits>
#include <utility>

namespace KesDevice {

using namespace KesDriver;

void Kesto::receive(ConnectionNumber connection, const Report& report)
{
    const auto hear = [&](const auto& content) {
        using Content = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<Content, KesAvary>)
            _onAvary(connection, content);
        else if constexpr (std::is_same_v<Content, ConnectionLost>)
            _onLost(connection);
        else
            _onEvent(connection, content);
    };
    try {
        std::visit(hear, report);
    } catch (...) {
        _onUntold(connection);
    }
}

void Kesto::_onEvent(ConnectionNumber connection, Report event)
{
    unsigned epoch = 0;
    bool isAccepted = false;
    bool isEnd = false;
    std::optional<std::string> refusal;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        if (!_fields->isCurrent(connection))
            return;
        epoch = _fields->machine.getEpoch();
        isAccepted = _fields->filter.accept(event, _fields->limits);
        isEnd = isAccepted && std::holds_alternative<SequenceEvent>(event);
        if (isEnd)
            _fields->ends.beginTelling();
    }
    if (isAccepted)
        refusal = _emitReport(event);
    else
        _distrust(epoch, _getText("Errors.Kesto.nonsense"), LetGo::StopFirst);
    if (isEnd) {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        _fields->ends.endTelling();
        _fields->changed.notifyAll();
    }
    if (refusal)
        _distrust(epoch, _getUntoldText(*refusal), LetGo::StopFirst);
}

/// Inside a catch block.
void Kesto::_onUntold(ConnectionNumber connection) noexcept
{
    unsigned epoch = 0;
    {
        // First what needs no memory.
        std::lock_guard lock(DeviceStateMachine::getMutex());
        auto& machine = _fields->machine;
        if (!_fields->isCurrent(connection))
            return;
        epoch = machine.getEpoch();
        if (machine.getState() == DeviceState::Ready || machine.getState() == DeviceState::Working)
            machine.change(DeviceState::Faulty);
    }
    try {
        _distrust(epoch, _getUntoldText(Kes::getCurrentExceptionText()), LetGo::StopFirst);
    } catch (...) {
        _safely([this] { _link->disconnect(); });
    }
}

void Kesto::_onAvary(ConnectionNumber connection, const KesAvary& avary)
{
    const auto corrected = KestoPlausibility::correct(avary, getIdentifer());
    const auto faults = describeFaults(corrected);
    const auto reason =
        faults.empty() ? lng::HardwareManager::get("Errors.Kesto.notReady")
                       : Kes::StringHelper::format(lng::HardwareManager::get("Errors.Kesto.fault"), faults);
    bool hasFailed = false;
    bool isNews = false;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        auto& machine = _fields->machine;
        if (!_fields->isCurrent(connection))
            return;
        if (machine.getState() == DeviceState::Connecting) {
            _fields->attempt->fault = avary;
            return;
        }
        hasFailed = machine.getState() != DeviceState::Faulty;
        isNews = _fields->knownFault.isNews(corrected, KnownFault::Time::clock::now()) || hasFailed;
        _fields->ends.beginEnd();
        machine.change(DeviceState::Faulty, reason);
        if (isNews)
            _fields->announce(Report(corrected));
    }
    if (hasFailed)
        _safely([this] { _stopOthers(); });
    if (isNews)
        _tellFailure({});
    else
        _safely([this] { _emitOperationError(); });
}

void Kesto::_onLost(ConnectionNumber connection)
{
    unsigned epoch = 0;
    const auto text = _getText("Errors.Kesto.connectionLost");
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        if (!_fields->isCurrent(connection))
            return;
        epoch = _fields->machine.getEpoch();
        if (_fields->attempt)
            _fields->attempt->failure = text;
    }
    _lose(epoch);
}

void Kesto::_lose(unsigned epoch)
{
    const auto text = _getText("Errors.Kesto.connectionLost");
    std::optional<SequenceEvent> end;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        auto& machine = _fields->machine;
        if (machine.getEpoch() != epoch || !_isConnectedNow())
            return;
        end = _fields->endConnection();
        machine.change(DeviceState::Lost, text);
        _fields->announce(Report(ConnectionLost{}));
    }
    _safely([this] { _stopOthers(); });
    _tellFailure(end);
}

void Kesto::_distrust(unsigned epoch, const std::string& reason, LetGo how)
{
    bool isAttemptFailing = false;
    std::optional<SequenceEvent> end;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        auto& machine = _fields->machine;
        if (machine.getEpoch() != epoch || _fields->connection == 0)
            return;
        isAttemptFailing = machine.getState() == DeviceState::Connecting;
        if (isAttemptFailing) {
            _fields->attempt->failure = reason;
        } else {
            end = _fields->endConnection();
            machine.change(DeviceState::Faulty, reason);
            _fields->announce(reason);
        }
        _fields->connection = 0;
        ++_fields->endings;
    }
    KesLog::Log::writeWarn(reason);
    if (!isAttemptFailing)
        _safely([this] { _stopOthers(); });
    // First the outputs, then the words.
    _safely([&] { _endLink(isAttemptFailing ? LetGo::AtOnce : how); });
    if (!isAttemptFailing)
        _tellFailure(end);
}

void Kesto::_stopOthers()
{
    const auto stopper = [this] {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        return _fields->faultStopper.lock();
    }();
    if (stopper)
        stopper->stopOthers(*this);
}

// Telling

std::string Kesto::_getUntoldText(const std::string& reason) const
{
    return Kes::StringHelper::format(lng::HardwareManager::get("Errors.Kesto.untold"), toDisplayString(),
                                     reason);
}

void Kesto::_tellFailure(const std::optional<SequenceEvent>& end)
{
    _safely([this] { _emitOperationError(); });
    _safely([this] { _tellAnnounced(); });
    _safely([&] { _emitEnd(end); });
}

void Kesto::_tellAnnounced()
{
    std::vector<News> untold;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        --_fields->tellersPending;
        untold = _fields->takeUntold();
    }
    for (const auto& news : untold)
        _emit(news);
}

void Kesto::_emit(const News& news)
{
    if (const auto* report = std::get_if<Report>(&news))
        _emitReportOrNotice(*report);
    else
        signalNotice.emit(std::get<std::string>(news).c_str());
}

void Kesto::_emitEnd(const std::optional<SequenceEvent>& end)
{
    if (end)
        _emitReportOrNotice(*end);
}

std::optional<std::string> Kesto::_emitReport(const Report& report)
{
    signalReport.emit(report);
    std::lock_guard lock(DeviceStateMachine::getMutex());
    if (!std::exchange(_fields->isReportRefused, false))
        return std::nullopt;
    return std::exchange(_fields->refusal, {});
}

/// Of a device that has failed already.
void Kesto::_emitReportOrNotice(const Report& report)
{
    if (const auto refusal = _emitReport(report))
        signalNotice.emit(refusal->c_str());
}

void Kesto::_emitOperationError()
{
    // Under the gate, so that two threads report in the order of the changes.
    const Kes::SignalGate::Guard gate;
    Kes::Nullable<std::string> error;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        error = _fields->machine.getOperationError();
        if (error.hasValue() == _fields->emittedError.hasValue() &&
            (!error || *error == *_fields->emittedError))
            return;
        _fields->emittedError = error;
    }
    signalOperationErrorChanged.emit(error);
}

Kesto::ToldByResult::ToldByResult(std::shared_ptr<Kesto> kesto) : _kesto(std::move(kesto))
{
    std::lock_guard lock(DeviceStateMachine::getMutex());
    ++_kesto->_fields->resultsPending;
}

Kesto::ToldByResult::~ToldByResult()
{
    if (!_kesto)
        return;
    std::vector<News> untold;
    {
        std::lock_guard lock(DeviceStateMachine::getMutex());
        auto& fields = *_kesto->_fields;
        if (_isTold)
            fields.setTold();
        --fields.resultsPending;
        untold = fields.takeUntold();
    }
    for (const auto& news : untold)
        _kesto->_emit(news);
}

} // namespace KesDevice
