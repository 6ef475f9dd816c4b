#include <KesDevice/view/HardwareDraft.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/view/DeviceViewText.h>
#include <KesDriver/OutputCheck.h>

#include <algorithm>
#include <utility>

namespace KesDevice {

namespace {

using Kes::StringHelper::format;
using lng::DeviceView::get;

/// Neither "this network", nor a group of receivers, nor a broadcast.
bool canBeDevice(const Kesto::Address& address)
{
    const auto first = address.getBytes()[0];
    return first != 0 && first < 224;
}

std::unique_ptr<Kesto> copyOf(const Kesto& kesto)
{
    auto copy = std::make_unique<Kesto>(kesto.getAddress());
    // The values come from a device that has accepted them.
    (void)copy->auxDC().set(kesto.auxDC().getEnable(), kesto.auxDC().getVolts());
    return copy;
}

std::string voltsProblem(const std::string& volts, const std::optional<double>& value)
{
    const auto number = [](double limit) { return Kes::NumberText::show(limit); };
    const auto range = format(get("Devices.voltsRange"), number(KesDriver::minimumAuxDCVolts),
                              number(KesDriver::maximumAuxDCVolts));
    if (!value)
        return format(get("Devices.notVolts"), volts, range);
    const auto result = KesDriver::checkAuxDC(*value);
    return result ? std::string() : Kes::ObjectErrorHelper::toDisplayString({result.getError()});
}

} // namespace

HardwareDraft::HardwareDraft(const HardwareManager& edited) : _hardware(edited.clone())
{
    for (const auto& kesto : _hardware->getKestos().lease())
        _append(copyOf(*kesto));
    (void)_hardware->getKestos().clear();
}

void HardwareDraft::_append(std::unique_ptr<Kesto> kesto)
{
    DeviceState state;
    state.address = kesto->getAddress().to_string();
    state.identity = get("Identity.unknown");
    state.isAuxDCEnabled = kesto->auxDC().getEnable();
    state.volts = Kes::NumberText::show(kesto->auxDC().getVolts());
    _kestos.push_back(std::move(kesto));
    _states.push_back(std::move(state));
}

bool HardwareDraft::contains(const Kesto::Address& address) const
{
    return std::any_of(_kestos.begin(), _kestos.end(),
                       [&](const auto& kesto) { return kesto->getAddress() == address; });
}

Kes::Result HardwareDraft::checkAddress(const std::string& text, Kesto::Address& address) const
{
    const std::string typed(Kes::StringHelper::trim(text));
    const auto read = Kesto::Address::parse(typed);
    if (!read)
        return Kes::Result::failure(format(get("Add.malformed"), typed));
    if (!canBeDevice(*read))
        return Kes::Result::failure(format(get("Add.noDevice"), typed));
    if (contains(*read))
        return Kes::Result::failure(format(get("Add.taken"), typed));
    address = *read;
    return true;
}

Kes::Result HardwareDraft::add(const std::string& address)
{
    Kesto::Address read;
    auto result = checkAddress(address, read);
    if (result) {
        _append(std::make_unique<Kesto>(read));
        signalChanged.emit();
    }
    return result;
}

void HardwareDraft::remove(std::size_t index)
{
    if (index >= _kestos.size())
        return;
    _kestos.erase(_kestos.begin() + static_cast<std::ptrdiff_t>(index));
    _states.erase(_states.begin() + static_cast<std::ptrdiff_t>(index));
    signalChanged.emit();
}

void HardwareDraft::move(std::size_t index, int by)
{
    const auto target = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(index) + by);
    if (index >= _kestos.size() || target >= _kestos.size())
        return;
    std::swap(_kestos[index], _kestos[target]);
    std::swap(_states[index], _states[target]);
    signalChanged.emit();
}

void HardwareDraft::setAuxDC(std::size_t index, bool enable, const std::string& volts)
{
    if (index >= _kestos.size())
        return;
    auto& auxDC = _kestos[index]->auxDC();
    auto& state = _states[index];
    const auto value = Kes::NumberText::read(volts);
    const auto problem = voltsProblem(volts, value);
    const bool isTakenBack = !enable && !problem.empty();
    state.isAuxDCEnabled = enable;
    state.volts = isTakenBack ? Kes::NumberText::show(auxDC.getVolts()) : volts;
    state.voltsProblem = isTakenBack ? std::string() : problem;
    (void)auxDC.set(enable, problem.empty() ? *value : auxDC.getVolts());
    signalChanged.emit();
}

std::optional<std::size_t> HardwareDraft::findProblem() const
{
    const auto found = std::find_if(_states.begin(), _states.end(),
                                    [](const DeviceState& state) { return !state.voltsProblem.empty(); });
    return found == _states.end() ? std::nullopt
                                  : std::optional(static_cast<std::size_t>(found - _states.begin()));
}

void HardwareDraft::setAsking(const Kesto::Address& address)
{
    _setIdentity(address, IdentityState::Asking, get("Identity.asking"));
}

void HardwareDraft::setIdentifer(const Kesto::Address& address, const KesDriver::KestoIdentifer& identifer)
{
    _setIdentity(address, IdentityState::Known, identifer.toDisplayString());
}

void HardwareDraft::setIdentityError(const Kesto::Address& address, const std::string& error)
{
    _setIdentity(address, IdentityState::Failed, error);
}

void HardwareDraft::_setIdentity(const Kesto::Address& address, IdentityState state, const std::string& text)
{
    for (std::size_t i = 0; i < _kestos.size(); ++i)
        if (_kestos[i]->getAddress() == address) {
            const bool simulated = state == IdentityState::Known && _kestos[i]->isSimulated();
            _states[i].identityState = state;
            _states[i].identity = simulated ? format(get("Identity.simulated"), text) : text;
            signalChanged.emit();
            return;
        }
}

std::unique_ptr<HardwareManager> HardwareDraft::take()
{
    for (auto& kesto : std::exchange(_kestos, {}))
        (void)_hardware->getKestos().addKesto(std::move(kesto));
    _states.clear();
    return std::move(_hardware);
}

} // namespace KesDevice
