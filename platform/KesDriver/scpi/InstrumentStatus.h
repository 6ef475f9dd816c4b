#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/scpi/ErrorQueue.h>
#include <KesDriver/scpi/StatusRegister.h>

#include <cstdint>

namespace KesDriver::Scpi {

/// The status of an instrument as one controller sees it: the registers of IEEE 488.2 and SCPI, and the
/// error queue. Not synchronised. It begins with `PowerOn`, so that the controller sees that what it had
/// enabled is gone.
class KES_EXPORT InstrumentStatus {
public:
    /// Bits of the standard event register.
    enum StandardEvent : std::uint8_t {
        OperationComplete = 1,
        QueryError = 4,
        DeviceError = 8,
        ExecutionError = 16,
        CommandError = 32,
        PowerOn = 128,
    };

    StatusRegister operation;
    StatusRegister questionable;

    /// Into the queue, with the bit of its class in the standard event register.
    void addError(const Error& error);
    /// As `ErrorQueue::take`.
    Error takeError() { return _errors.take(); }
    std::size_t getErrorCount() const { return _errors.getCount(); }

    /// Sets the bit until the register is read.
    void note(StandardEvent event) { _standardEvents = static_cast<std::uint8_t>(_standardEvents | event); }
    /// The standard event register, which is cleared by being read (`*ESR?`).
    std::uint8_t takeStandardEvents();
    std::uint8_t getStandardEnable() const { return _standardEnable; }
    /// `*ESE`: which bits of that register count for bit 5 of the status byte.
    void setStandardEnable(std::uint8_t bits) { _standardEnable = bits; }
    std::uint8_t getServiceEnable() const { return _serviceEnable; }
    /// Bit 6 cannot be enabled.
    void setServiceEnable(std::uint8_t bits) { _serviceEnable = bits & 0xBFU; }
    /// Bit 2: errors wait; 3: questionable; 4: an answer waits, as the caller says; 5: standard events; 7:
    /// operation. Bit 6, the master summary: any of them that is enabled for service.
    std::uint8_t getStatusByte(bool hasAnswer) const;

    /// `*CLS`: the events and the errors; what is enabled stays.
    void clear();

private:
    ErrorQueue _errors;
    std::uint8_t _standardEvents = PowerOn;
    std::uint8_t _standardEnable = 0;
    std::uint8_t _serviceEnable = 0;
};

} // namespace KesDriver::Scpi
