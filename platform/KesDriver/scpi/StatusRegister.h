#pragma once

#include <KesCommon/Export.h>

#include <cstdint>

namespace KesDriver::Scpi {

/// A status register as SCPI has it: a condition, whose rises and falls set bits of the event register where
/// the two transition filters let them through; the event register's enabled bits make the summary. 15 bits.
/// Not synchronised.
class KES_EXPORT StatusRegister {
public:
    using Bits = std::uint16_t;
    static constexpr Bits all = 0x7FFF;

    /// The present state; bits that change may set events.
    void setCondition(Bits condition);
    Bits getCondition() const { return _condition; }
    /// Clears it.
    Bits takeEvents();
    Bits getEnable() const { return _enable; }
    /// Which events make the summary.
    void setEnable(Bits bits) { _enable = bits & all; }
    Bits getPositive() const { return _positive; }
    /// Which rises set their event.
    void setPositive(Bits bits) { _positive = bits & all; }
    Bits getNegative() const { return _negative; }
    /// Which falls set their event.
    void setNegative(Bits bits) { _negative = bits & all; }
    bool getSummary() const { return (_events & _enable) != 0; }
    /// Nothing enabled, rises only.
    void preset();

private:
    Bits _condition = 0;
    Bits _events = 0;
    Bits _enable = 0;
    Bits _positive = all;
    Bits _negative = 0;
};

} // namespace KesDriver::Scpi
