#include <KesDevice/view/HardwareDraft.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>
#include <KesDevice/view/detail/DeviceDescription.h>
#include <KesDevice/view/detail/DeviceViewText.h>
#include <KesDriver/OutputCheck.h>

#include <algorithm>
#include <utility>

namespace KesDevice {

namespace {

using Kes::StringHelper::format;
using lng::DeviceView::get;

constexpr double defaultVolts = 220.0;

/// Neither "this network", nor a group of receivers, nor a broadcast.
bool canBeDevice(const Kesto::Address& address)
{
    const auto first = address.getBytes()[0];
    return first != 0 && first < 224;
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
        _append(kesto->getAddress(), kesto->auxDC().getEnable(), kesto->auxDC().getVolts());
    (void)_hardware->getKestos().clear();
}

void HardwareDraft::_append(const Kesto::Address& address, bool isAuxDCEnabled, double volts)
{
    Device device{address, volts, {}};
    device.entry.address = address.to_string();
    device.entry.identity = get("Identity.unknown");
    device.entry.isAuxDCEnabled = isAuxDCEnabled;
    device.entry.volts = Kes::NumberText::show(volts);
    _devices.push_back(std::move(device));
}

std::vector<DeviceEntry> HardwareDraft::getDevices() const
{
    std::vector<DeviceEntry> entries;
    for (const auto& device : _devices)
        entries.push_back(device.entry);
    return entries;
}

bool HardwareDraft::contains(const Kesto::Address& address) const
{
    return std::any_of(_devices.begin(), _devices.end(),
                       [&](const Device& device) { return device.address == address; });
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
        _append(read, false, defaultVolts);
        signalChanged.emit();
    }
    return result;
}

void HardwareDraft::remove(std::size_t index)
{
    if (index >= _devices.size())
        return;
    _devices.erase(_devices.begin() + static_cast<std::ptrdiff_t>(index));
    signalChanged.emit();
}

void HardwareDraft::move(std::size_t index, int by)
{
    const auto target = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(index) + by);
    if (index >= _devices.size() || target >= _devices.size())
        return;
    std::swap(_devices[index], _devices[target]);
    signalChanged.emit();
}

void HardwareDraft::setAuxDC(std::size_t index, bool enable, const std::string& volts)
{
    if (index >= _devices.size())
        return;
    auto& device = _devices[index];
    const auto value = Kes::NumberText::read(volts);
    const auto problem = voltsProblem(volts, value);
    const bool isTakenBack = !enable && !problem.empty();
    if (problem.empty())
        device.volts = *value;
    device.entry.isAuxDCEnabled = enable;
    device.entry.volts = isTakenBack ? Kes::NumberText::show(device.volts) : volts;
    device.entry.voltsProblem = isTakenBack ? std::string() : problem;
    signalChanged.emit();
}

std::optional<std::size_t> HardwareDraft::findProblem() const
{
    const auto found = std::find_if(_devices.begin(), _devices.end(),
                                    [](const Device& device) { return !device.entry.voltsProblem.empty(); });
    return found == _devices.end() ? std::nullopt
                                   : std::optional(static_cast<std::size_t>(found - _devices.begin()));
}

void HardwareDraft::setAsking(const Kesto::Address& address)
{
    _setIdentity(address, IdentityState::Asking, get("Identity.asking"));
}

void HardwareDraft::setIdentifer(const Kesto::Address& address, const KesDriver::KestoIdentifer& identifer,
                                 bool isSimulated)
{
    _setIdentity(address, IdentityState::Known, describeDevice(identifer, isSimulated));
}

void HardwareDraft::setIdentityError(const Kesto::Address& address, const std::string& error)
{
    _setIdentity(address, IdentityState::Failed, error);
}

void HardwareDraft::_setIdentity(const Kesto::Address& address, IdentityState state, const std::string& text)
{
    const auto found = std::find_if(_devices.begin(), _devices.end(),
                                    [&](const Device& device) { return device.address == address; });
    if (found == _devices.end())
        return;
    found->entry.identityState = state;
    found->entry.identity = text;
    signalChanged.emit();
}

std::unique_ptr<HardwareManager> HardwareDraft::take()
{
    for (const auto& device : std::exchange(_devices, {})) {
        (void)_hardware->addKesto(device.address);
        // Not connected yet, so that nothing but the value itself is looked at.
        (void)_hardware->getKestos()
            .find(device.address)
            ->auxDC()
            .set(device.entry.isAuxDCEnabled, device.volts);
    }
    return std::move(_hardware);
}

} // namespace KesDevice
