#pragma once

#include <KesCommon/Export.h>
#include <KesDevice/Kesto.h>
#include <KesMeasure/Measurement.h>
#include <KesMeasure/RunControl.h>

#include <string>

namespace KesMeasure {

/// Hears what a run does, on the start thread.
class KES_EXPORT IMeasurementListener {
public:
    virtual ~IMeasurementListener();

    /// A measurement begins: which one, from 0, and the share of the expected time that is over, 0 to 1.
    virtual void onMeasurement(std::size_t index, double progress) = 0;
    virtual void onReading(const Reading& reading) = 0;
};

/// Makes the measurements of a plan, one after the other. Made for one run, on the start thread.
class KES_EXPORT MeasurementRun {
public:
    /// All of them outlive it. The plan suits the device.
    MeasurementRun(const MeasurementPlan& plan, KesDevice::Kesto& kesto, RunControl& control,
                   IMeasurementListener& listener);

    /// Returns when everything is measured, the run was stopped, or the device failed; all outputs are zero
    /// then.
    RunEnd execute();

    /// Why the device failed.
    const std::string& getError() const { return _error; }

private:
    RunEnd _measure(const PlannedMeasurement& planned, Reading& reading);
    RunEnd _fail(std::string error);

    const MeasurementPlan& _plan;
    IMeasurementListener& _listener;
    SequenceRecorder _recorder;
    std::string _error;
};

} // namespace KesMeasure
