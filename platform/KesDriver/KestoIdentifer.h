#pragma once

#include <KesCommon/Export.h>

#include <cstdint>
#include <string>

namespace KesDriver {

/// The two values that identify one device: its type and its serial number. Other than its address, they
/// stay with the device. A value; any thread.
class KES_EXPORT KestoIdentifer {
public:
    KestoIdentifer() = default;
    KestoIdentifer(std::uint16_t type, std::uint32_t serialNumber) : _type(type), _serialNumber(serialNumber)
    {}

    /// The number in "KESTO-3"; 0: unknown.
    std::uint16_t getType() const { return _type; }
    /// From 1; 0: unknown.
    std::uint32_t getSerialNumber() const { return _serialNumber; }

    /// The name of the type, such as "KESTO-3"; "KESTO" for the type 0, which is unknown.
    std::string getTypeName() const;

    /// The type's name and the serial number with at least five digits, such as "KESTO-3 No. 00017"
    /// ("КЕСТО-3 № 00017"); the type's name alone for the serial number 0.
    std::string toDisplayString() const;

    bool operator==(const KestoIdentifer&) const = default;

private:
    std::uint16_t _type = 0;
    std::uint32_t _serialNumber = 0;
};

} // namespace KesDriver
