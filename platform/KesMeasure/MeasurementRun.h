#pragma once

#include <KesCommon/Export.h>
#include <KesDevice/Kesto.h>
#include <KesMeasure/Measurement.h>
#include <KesMeasure/RunClock.h>
#include <KesMeasure/RunControl.h>

#include <string>
#include <vector>

namespace KesMeasure {

/// What a run measures of a plan. A value.
struct RunOrder {
    /// Which of the plan's measurements, one after the other.
    std::vector<std::size_t> indices;
    /// How many times each.
    unsigned repetitions = 1;
};

/// Where a run is.
struct RunPosition {
    /// Which of the plan's measurements, and which repetition of it, from 1.
    std::size_t index = 0;
    unsigned repetition = 1;
    /// By the device's clock.
    RunTimes times;
};

/// Hears what a run does, on the start thread.
class KES_EXPORT IMeasurementListener {
public:
    virtual ~IMeasurementListener();

    /// Where the run is; several times within a measurement.
    virtual void onPosition(const RunPosition& position) = 0;
    /// A measurement is over, with all its repetitions: its value, or why there is none.
    virtual void onReading(std::size_t index, const Reading& reading) = 0;
};

/// Makes measurements of a plan, one after the other. Made for one run, on the start thread. A measurement
/// without a value (no operation, contacts that stay closed) does not end the run, and is not repeated.
class KES_EXPORT MeasurementRun {
public:
    /// Plan, device, control and listener outlive it. The plan suits the device.
    MeasurementRun(const MeasurementPlan& plan, RunOrder order, KesDevice::Kesto& kesto, RunControl& control,
                   IMeasurementListener& listener);

    /// Returns when everything is measured, the run was stopped, or the device failed; all outputs are zero
    /// then. Also a device whose times make no sense has failed.
    RunEnd execute();

    /// Why the device failed, as a text for the user; empty unless the end was `RunEnd::Fault`.
    const std::string& getError() const { return _error; }

private:
    RunEnd _measure(std::size_t index);
    RunEnd _measureOnce(const PlannedMeasurement& planned, Reading& reading);
    void _tell(const RunPosition& position);
    RunEnd _fail(std::string error);

    const MeasurementPlan& _plan;
    const RunOrder _order;
    IMeasurementListener& _listener;
    RunClock _clock;
    RunPosition _position;
    StepRunner _runner;
    std::string _error;
};

} // namespace KesMeasure
