#include <KesDriver/simulated/detail/SimulatedInputs.h>

namespace KesDriver {

bool SimulatedInputs::isClosed(unsigned input) const
{
    return input >= 1 && input <= getCount() && _closedContacts[input - 1] != 0;
}

bool SimulatedInputs::set(Contact contact, unsigned input, bool closed)
{
    if (input < 1 || input > getCount())
        return false;
    const bool before = isClosed(input);
    auto& contacts = _closedContacts[input - 1];
    const auto bit = static_cast<unsigned>(contact);
    contacts = closed ? contacts | bit : contacts & ~bit;
    return isClosed(input) != before;
}

} // namespace KesDriver
