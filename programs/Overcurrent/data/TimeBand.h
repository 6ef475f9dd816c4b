#pragma once

#include <Overcurrent/data/Fault.h>
#include <Overcurrent/data/RelaySettings.h>

#include <optional>

namespace Overcurrent {

/// The operate times of a healthy relay at one current of a fault, in seconds. A value. Any thread.
///
/// A relay that is off in measuring the current within its tolerance operates as at a current a little higher
/// or lower; on top of both times comes the time tolerance, which is that of the lower current. Of all stages
/// the fastest one decides, at each end: near the setting of a faster stage the times with it and without it
/// are both right.
struct TimeBand {
    double earliest = 0.0;
    double expected = 0.0;
    /// Nothing where such a relay need not operate at all.
    std::optional<double> latest;
    /// The stage that operates at the expected time.
    StageId stage = StageId::First;

    /// Nothing where no stage operates. The multiple is one of `StageTimes::referenceCurrent`.
    static std::optional<TimeBand> at(const RelaySettings& settings, const FaultCase& faultCase,
                                      double multiple);
};

} // namespace Overcurrent
