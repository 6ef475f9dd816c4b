#pragma once

#include <Overcurrent/data/RelaySettings.h>
#include <Overcurrent/data/TestPlan.h>

#include <KesDriver/Outputs.h>
#include <KesMeasure/StepRunner.h>

#include <vector>

/// What a test puts out, as sequences for a device: the currents of a fault, and the nominal voltages with
/// them when a stage is directional. The current of a forward fault has the characteristic angle against the
/// voltage of the faulted loop, that of a reverse one is opposite. Any thread.
namespace Overcurrent::TestSequences {

/// The contacts open and the relay at rest: before everything below.
KesMeasure::StepGuard guard(const RelaySettings& settings, const TestPlan& plan);

/// How long a point waits for the trip contact, in seconds: a little longer than a healthy relay takes, so
/// that a slow one is measured but none is burnt; never longer than the plan's time-out.
double pointLimit(const RelaySettings& settings, const TestPlan& plan, const PlannedPoint& point);
/// One step, until the trip contact closes.
KesDriver::OutputSequence point(const RelaySettings& settings, const TestPlan& plan,
                                const PlannedPoint& point);

/// The outputs at a fault with this current in amperes.
KesDriver::OutputState outputs(const RelaySettings& settings, const TestPlan& plan, Fault fault,
                               double amperes);

/// The multiples of the first, coarse run of a ramp.
std::vector<double> coarse(const Ramp& ramp);
/// Those of the second, fine one, between the coarse steps without and with the change, and one step beyond
/// both: a relay is not quite the same each time.
std::vector<double> fine(const Ramp& ramp, double without, double with);

/// A step for each multiple, until the contact closes; the steps behind that end at once.
KesDriver::OutputSequence pickUp(const RelaySettings& settings, const TestPlan& plan,
                                 const std::vector<double>& multiples);
/// A step at the beginning of the ramp until the contact has closed; then a step for each multiple, until it
/// opens.
KesDriver::OutputSequence dropOff(const RelaySettings& settings, const TestPlan& plan,
                                  const std::vector<double>& multiples);

} // namespace Overcurrent::TestSequences
