#pragma once

#include <cstdint>
#include <vector>

namespace KesDriver {

/// The binary inputs of a simulated device; an input is closed while at least one of the contacts wired to it
/// is. Inputs count from 1; others are never closed. Not synchronised; its owner does that.
class SimulatedInputs {
public:
    /// TestObject: its contact. Wire: a hand at the bench, a push button, another device.
    enum class Contact : unsigned { TestObject = 1, Wire = 2 };

    explicit SimulatedInputs(unsigned count) : _closedContacts(count, 0) {}

    unsigned getCount() const { return static_cast<unsigned>(_closedContacts.size()); }
    bool isClosed(unsigned input) const;
    /// The closed ones of the first 32; bit 0 is input 1.
    std::uint32_t getMask() const;
    /// Whether the input has changed by that.
    bool set(Contact contact, unsigned input, bool isClosed);

private:
    std::vector<unsigned> _closedContacts;
};

} // namespace KesDriver
