#pragma once

namespace KesMeasure {

/// What the current input of a relay can carry, in multiples of its nominal current. A value; the defaults
/// are those of most relays. Each multiple is above the one before it.
struct Withstand {
    /// In amperes.
    double nominalAmperes = 1.0;
    double continuous = 4.0;
    double tenSeconds = 30.0;
    double oneSecond = 100.0;

    bool operator==(const Withstand&) const = default;
};

} // namespace KesMeasure
