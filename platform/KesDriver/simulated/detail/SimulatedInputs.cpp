#include <KesDriver/simulated/detail/SimulatedInputs.h>

#include <algorithm>

namespace KesDriver {

bool SimulatedInputs::isClosed(unsigned input) const
{
    return input >= 1 && input <= getCount() && _closedContacts[input - 1] != 0;
}

std::uint32_t SimulatedInputs::getMask() const
{
    constexpr unsigned width = 32;
    std::uint32_t mask = 0;
    for (unsigned input = 1; input <= std::min(getCount(), width); ++input)
        if (isClosed(input))
            mask |= std::uint32_t{1} << (input - 1);
    return mask;
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
