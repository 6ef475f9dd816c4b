#include <KesDevice/KestoImpl.h>

#include <KesCommon/Log.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/HardwareManagerText.h>

#include <utility>

namespace KesDevice {

using namespace KesDriver;
using Kes::StringHelper::format;

namespace {

constexpr std::size_t longestStateText = 300;

bool isSame(const std::optional<std::string>& a, const std::optional<std::string>& b)
{
    return a == b;
}

} // namespace

Kesto::Impl::Impl(Kesto& kesto, std::unique_ptr<IKestoLink> deviceLink)
    : link(std::move(deviceLink)), _kesto(kesto), _reports(std::make_shared<KestoReports>(*this))
{
    link->setListener(_reports.get());
}

Kesto::Impl::~Impl()
{
    _reports->close();
    link->setListener(nullptr);
    link->disconnect();
}

Kes::Result Kesto::Impl::connect()
{
    const unsigned epoch = _epoch;
    const unsigned auxDCChange = _kesto._auxDC._getChange();
    KestoState state;
    Kes::Result result = true;
    {
        std::lock_guard lock(_connecting);
        if (link->isConnected())
            return true;
        result = _open(state, epoch);
    }
    if (result)
        _applyState(state, epoch, auxDCChange);
    else
        setOperationError(Kes::ObjectErrorHelper::toDisplayString({result.getError()}), epoch);
    return result;
}

Kes::Result Kesto::Impl::_open(KestoState& state, unsigned epoch)
{
    {
        std::lock_guard lock(_mutex);
        _filter = {};
        _nonsenseReported = false;
    }
    auto result = link->connect();
    if (result)
        result = _identify();
    if (result)
        result = link->setAuxDC(_kesto._auxDC.getEnable(), _kesto._auxDC.getVolts());
    if (result)
        result = _readState(state);
    // Whoever disconnects meanwhile has the last word.
    if (result && (_retired || epoch != _epoch))
        result = Kes::Result::failure(
            format(lng::HardwareManager::get("Errors.Kesto.disconnected"), getDisplayString()));
    if (!result)
        link->disconnect();
    return result;
}

Kes::Result Kesto::Impl::_identify()
{
    KestoIdentifer identifer;
    if (auto result = link->identify(identifer); !result)
        return result;
    if (!KestoPlausibility::isPlausible(identifer))
        return Kes::Result::failure(_getNonsenseText());
    std::lock_guard lock(_mutex);
    _identifer = identifer;
    return true;
}

Kes::Result Kesto::Impl::_readState(KestoState& state)
{
    auto result = link->readState(state);
    if (result && !KestoPlausibility::isPlausible(state))
        return Kes::Result::failure(_getNonsenseText());
    return result;
}

void Kesto::Impl::_applyState(const KestoState& state, unsigned epoch, unsigned auxDCChange)
{
    std::string error;
    if (!state.isReady)
        error = state.error.empty() ? lng::HardwareManager::get("Errors.Kesto.notReady")
                                    : KestoPlausibility::correctText(state.error, longestStateText);
    const auto reports = _reports;
    _kesto._auxDC._follow(state.isAuxDCEnabled, auxDCChange);
    if (!reports->isClosed())
        setOperationError(error, epoch);
}

void Kesto::Impl::disconnect()
{
    const unsigned epoch = ++_epoch;
    link->disconnect();
    setOperationError({}, epoch);
}

void Kesto::Impl::retire()
{
    _retired = true;
    disconnect();
}

Kes::Result Kesto::Impl::updateState()
{
    if (!link->isConnected())
        return connect();
    const unsigned epoch = _epoch;
    const unsigned auxDCChange = _kesto._auxDC._getChange();
    KestoState state;
    auto result = _readState(state);
    if (result)
        _applyState(state, epoch, auxDCChange);
    else
        setOperationError(Kes::ObjectErrorHelper::toDisplayString({result.getError()}), epoch);
    return result;
}

KestoIdentifer Kesto::Impl::getIdentifer() const
{
    std::lock_guard lock(_mutex);
    return _identifer;
}

Kesto::Impl::OperationError Kesto::Impl::getOperationError() const
{
    std::lock_guard lock(_mutex);
    return _operationError;
}

std::string Kesto::Impl::getDisplayString() const
{
    return getIdentifer().toDisplayString() + " (" + _kesto._address.to_string() + ')';
}

OutputLimits Kesto::Impl::getLimits() const
{
    return KestoPlausibility::correct(link->getLimits());
}

void Kesto::Impl::setOperationError(const OperationError& error, unsigned epoch)
{
    Kes::SignalGate::Guard gate;
    {
        std::lock_guard lock(_mutex);
        if (epoch != _epoch || isSame(error, _operationError))
            return;
        _operationError = error;
    }
    _kesto.signalOperationErrorChanged.emit(error);
}

// Reports, on the device's thread

void Kesto::Impl::onInput(const InputEvent& event)
{
    const auto limits = getLimits();
    const bool isAccepted = [&] {
        std::lock_guard lock(_mutex);
        return _filter.accept(event, limits);
    }();
    if (isAccepted)
        _kesto.signalInput.emit(event);
    else
        _reportNonsense();
}

void Kesto::Impl::onStep(const StepEvent& event)
{
    const bool isAccepted = [&] {
        std::lock_guard lock(_mutex);
        return _filter.accept(event, stepCount);
    }();
    if (isAccepted)
        _kesto.signalStep.emit(event);
    else
        _reportNonsense();
}

void Kesto::Impl::onSequenceFinished(const SequenceEvent& event)
{
    auto accepted = event;
    const bool isPlausible = [&] {
        std::lock_guard lock(_mutex);
        return _filter.accept(accepted);
    }();
    const auto reports = _reports;
    if (!isPlausible)
        _reportNonsense();
    if (!reports->isClosed())
        _kesto.signalSequenceFinished.emit(accepted);
}

void Kesto::Impl::onAvary(const KesAvary& avary)
{
    auto corrected = KestoPlausibility::correct(avary, getIdentifer());
    const auto reports = _reports;
    if (const auto faults = describeFaults(corrected); !faults.empty())
        setOperationError(format(lng::HardwareManager::get("Errors.Kesto.fault"), faults), _epoch);
    if (!reports->isClosed())
        _kesto.signalAvary.emit(corrected);
}

void Kesto::Impl::onConnectionLost()
{
    KesAvary avary;
    avary.kestoType = getIdentifer().getType();
    avary.serialNumber = getIdentifer().getSerialNumber();
    avary.isConnectError = true;
    const auto reports = _reports;
    setOperationError(format(lng::HardwareManager::get("Errors.Kesto.connectionLost"), getDisplayString()),
                      _epoch);
    if (!reports->isClosed())
        _kesto.signalAvary.emit(avary);
}

std::string Kesto::Impl::_getNonsenseText() const
{
    return format(lng::HardwareManager::get("Errors.Kesto.nonsense"), getDisplayString());
}

/// Once per connection, or a device gone wild would flood the user.
void Kesto::Impl::_reportNonsense()
{
    {
        std::lock_guard lock(_mutex);
        if (std::exchange(_nonsenseReported, true))
            return;
    }
    const auto text = _getNonsenseText();
    KesLog::Log::writeWarn(text);
    const auto reports = _reports;
    setOperationError(text, _epoch);
    if (!reports->isClosed())
        _kesto.signalNotice.emit(text.c_str());
}

} // namespace KesDevice
