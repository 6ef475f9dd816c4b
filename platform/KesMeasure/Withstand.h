#pragma once

namespace KesMeasure {

/// What the current input of a relay can carry, in multiples of its nominal current. A value. Any thread. The
/// defaults are those of most relays. Each multiple is above the one before it.
struct Withstand {
    /// In amperes.
    double nominalAmperes = 1.0;
    /// For ever.
    double continuous = 4.0;
    /// For ten seconds.
    double tenSeconds = 30.0;
    /// For one second.
    double oneSecond = 100.0;

    bool operator==(const Withstand&) const = default;
};

} // namespace KesMeasure
