#include <KesDriver/scpi/StatusRegister.h>

#include <utility>

namespace KesDriver::Scpi {

void StatusRegister::setCondition(Bits condition)
{
    const auto rises = static_cast<Bits>(condition & ~_condition);
    const auto falls = static_cast<Bits>(_condition & ~condition);
    _events = static_cast<Bits>(_events | (rises & _positive) | (falls & _negative));
    _condition = condition & all;
}

StatusRegister::Bits StatusRegister::takeEvents()
{
    return std::exchange(_events, Bits{0});
}

void StatusRegister::preset()
{
    _enable = 0;
    _positive = all;
    _negative = 0;
}

} // namespace KesDriver::Scpi
