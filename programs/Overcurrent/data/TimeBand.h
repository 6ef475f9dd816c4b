#pragma once

#include <Overcurrent/data/RelaySettings.h>

#include <optional>

namespace Overcurrent {

/// The operate times of a healthy relay at one current, in seconds. A value. Any thread.
///
/// A relay that is off in measuring the current within its tolerance operates as at a current a little higher
/// or lower; on top of both times comes the time tolerance, which is that of the lower current.
struct TimeBand {
    double earliest = 0.0;
    double expected = 0.0;
    /// Nothing where such a relay need not operate at all.
    std::optional<double> latest;

    /// Nothing at or below Is.
    static std::optional<TimeBand> at(const RelaySettings& settings, double multiple);
};

} // namespace Overcurrent
