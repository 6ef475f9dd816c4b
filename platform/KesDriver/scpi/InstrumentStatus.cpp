#include <KesDriver/scpi/InstrumentStatus.h>

#include <utility>

namespace KesDriver::Scpi {

namespace {

/// The hundreds of a code are its class; a device's own codes are above zero.
InstrumentStatus::StandardEvent getClass(ErrorCode code)
{
    constexpr int hundred = 100;
    switch (-static_cast<int>(code) / hundred) {
    case 1:
        return InstrumentStatus::CommandError;
    case 2:
        return InstrumentStatus::ExecutionError;
    case 4:
        return InstrumentStatus::QueryError;
    default:
        return InstrumentStatus::DeviceError;
    }
}

} // namespace

void InstrumentStatus::addError(const Error& error)
{
    note(getClass(error.getCode()));
    _errors.add(error);
}

std::uint8_t InstrumentStatus::takeStandardEvents()
{
    return std::exchange(_standardEvents, std::uint8_t{0});
}

std::uint8_t InstrumentStatus::getStatusByte(bool hasAnswer) const
{
    unsigned bits = 0;
    bits |= _errors.getCount() > 0 ? 0x04U : 0U;
    bits |= questionable.getSummary() ? 0x08U : 0U;
    bits |= hasAnswer ? 0x10U : 0U;
    bits |= (_standardEvents & _standardEnable) != 0 ? 0x20U : 0U;
    bits |= operation.getSummary() ? 0x80U : 0U;
    bits |= (bits & _serviceEnable) != 0 ? 0x40U : 0U;
    return static_cast<std::uint8_t>(bits);
}

void InstrumentStatus::clear()
{
    _errors.clear();
    _standardEvents = 0;
    operation.takeEvents();
    questionable.takeEvents();
}

} // namespace KesDriver::Scpi
