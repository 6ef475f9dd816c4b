#include <KesMeasure/MeasurementRun.h>

#include <algorithm>
#include <stdexcept>

namespace KesMeasure {

IMeasurementListener::~IMeasurementListener() = default;

MeasurementRun::MeasurementRun(const MeasurementPlan& plan, KesDevice::Kesto& kesto, RunControl& control,
                               IMeasurementListener& listener)
    : _plan(plan), _listener(listener), _recorder(kesto, control)
{}

RunEnd MeasurementRun::execute()
{
    double whole = 0.0;
    for (const auto& planned : _plan)
        whole += planned.seconds;
    double done = 0.0;
    for (std::size_t i = 0; i < _plan.size(); ++i) {
        _listener.onMeasurement(i, whole > 0.0 ? done / whole : 0.0);
        Reading reading;
        if (const auto end = _measure(_plan[i], reading); end != RunEnd::Complete)
            return end;
        done += _plan[i].seconds;
        _listener.onReading(reading);
    }
    return RunEnd::Complete;
}

RunEnd MeasurementRun::_measure(const PlannedMeasurement& planned, Reading& reading)
try {
    for (std::size_t i = 0; i < planned.sequences.size(); ++i) {
        const auto outcome = _recorder.run(planned.sequences[i]);
        if (outcome == SequenceRecorder::Outcome::Stopped)
            return RunEnd::Stopped;
        if (outcome == SequenceRecorder::Outcome::Failed)
            return _fail(_recorder.getError());
        if (const auto found = planned.read(i, _recorder.getRecord())) {
            reading = *found;
            return RunEnd::Complete;
        }
    }
    reading = {MeasureState::NoOperation, 0.0};
    return RunEnd::Complete;
} catch (const std::runtime_error& error) {
    return _fail(error.what());
}

RunEnd MeasurementRun::_fail(std::string error)
{
    _error = std::move(error);
    return RunEnd::Fault;
}

} // namespace KesMeasure
