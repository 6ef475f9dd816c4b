#pragma once

#include <Overcurrent/data/Fault.h>
#include <Overcurrent/data/RelaySettings.h>

#include <optional>

/// What the stages of a relay do together at a fault: a stage counts when it is in use, sees current of the
/// fault, and does not look into the other direction. Any thread.
namespace Overcurrent::StageTimes {

/// How much of the fault's current the stage sees; 0 when it does not count.
double shareOf(const RelaySettings& settings, StageId stage, const FaultCase& faultCase);

/// The stage whose Is the multiples of a point mean: at N the residual stage, else the first phase stage that
/// counts, and without one the residual stage. Nothing when none counts.
std::optional<StageId> reference(const RelaySettings& settings, const FaultCase& faultCase);
/// The fault's current in amperes at which that stage sees its Is; 0 without one.
double referenceCurrent(const RelaySettings& settings, const FaultCase& faultCase);

/// The stage that picks up first when the current rises. Nothing when none counts.
std::optional<StageId> firstToPickUp(const RelaySettings& settings, const FaultCase& faultCase);
/// The fault's current in amperes at which it does; the multiples of a ramp mean it. 0 without one.
double pickUpCurrent(const RelaySettings& settings, const FaultCase& faultCase);

/// What a multiple of the reference current is as a multiple of the stage's own Is; 0 when it does not count.
double multipleOf(const RelaySettings& settings, StageId stage, const FaultCase& faultCase, double multiple);

/// The stage that trips first at a multiple of the reference current, and its time in seconds. Nothing when
/// none does.
struct Trip {
    StageId stage;
    double seconds;
};
std::optional<Trip> operate(const RelaySettings& settings, const FaultCase& faultCase, double multiple);

} // namespace Overcurrent::StageTimes
