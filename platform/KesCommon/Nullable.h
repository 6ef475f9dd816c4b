#pragma once

#include <optional>

namespace Kes {

/// A value that may be unknown.
template <typename T>
class Nullable : public std::optional<T> {
public:
    using std::optional<T>::optional;

    bool hasValue() const { return this->has_value(); }
    /// Only when there is a value.
    const T& getValue() const { return **this; }
};

} // namespace Kes
