#include <KesMeasure/MeasurementRun.h>

#include <stdexcept>

namespace KesMeasure {

IMeasurementListener::~IMeasurementListener() = default;

namespace {

std::vector<double> durationsOf(const MeasurementPlan& plan, const RunOrder& order)
{
    std::vector<double> durations;
    for (const auto index : order.indices)
        durations.insert(durations.end(), order.repetitions, plan[index].seconds);
    return durations;
}

} // namespace

MeasurementRun::MeasurementRun(const MeasurementPlan& plan, RunOrder order, KesDevice::Kesto& kesto,
                               RunControl& control, IMeasurementListener& listener)
    : _plan(plan),
      _order(std::move(order)),
      _listener(listener),
      _clock(durationsOf(plan, _order)),
      _runner(kesto, control)
{
    _runner.onTime() = [this](KesDriver::DeviceTime now) {
        _clock.setTime(now);
        _tell(_position);
    };
}

RunEnd MeasurementRun::execute()
{
    for (const auto index : _order.indices)
        if (const auto end = _measure(index); end != RunEnd::Complete)
            return end;
    return RunEnd::Complete;
}

RunEnd MeasurementRun::_measure(std::size_t index)
{
    std::vector<double> singles;
    Reading reading;
    for (unsigned i = 1; i <= _order.repetitions && reading.state == MeasureState::Measured; ++i) {
        _clock.beginStep();
        _tell({index, i, {}});
        if (const auto end = _measureOnce(_plan[index], reading); end != RunEnd::Complete)
            return end;
        if (reading.state == MeasureState::Measured)
            singles.push_back(reading.value);
    }
    _listener.onReading(index, Reading::ofSingles(std::move(singles), reading));
    return RunEnd::Complete;
}

void MeasurementRun::_tell(const RunPosition& position)
{
    _position = position;
    _position.times = _clock.getTimes();
    _listener.onPosition(_position);
}

RunEnd MeasurementRun::_measureOnce(const PlannedMeasurement& planned, Reading& reading)
try {
    for (std::size_t i = 0; i < planned.sequences.size(); ++i) {
        const auto outcome = _runner.run(planned.guard, planned.sequences[i]);
        if (outcome == StepRunner::Outcome::Stopped)
            return RunEnd::Stopped;
        if (outcome == StepRunner::Outcome::NotReset) {
            reading = {MeasureState::NotReset, 0.0};
            return RunEnd::Complete;
        }
        if (outcome != StepRunner::Outcome::Complete)
            return _fail(_runner.getError());
        if (const auto found = planned.read(i, _runner.getRecord())) {
            reading = *found;
            return RunEnd::Complete;
        }
    }
    reading = {planned.withoutReading, 0.0};
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
