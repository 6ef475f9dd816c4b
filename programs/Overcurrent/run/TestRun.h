#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesDevice/Kesto.h>
#include <KesMeasure/RunClock.h>
#include <KesMeasure/RunControl.h>
#include <KesMeasure/StepRunner.h>

#include <string>
#include <vector>

namespace Overcurrent {

/// Where a run is. A value.
struct RunPhase {
    enum class Kind { Point, PickUp, DropOff };

    Kind kind = Kind::Point;
    /// For a point: which one, from 1, of how many, and what it is.
    std::size_t number = 0;
    std::size_t count = 0;
    PlannedPoint point{};
    /// Which measurement of the point, from 1.
    unsigned repetition = 1;
    KesMeasure::RunTimes times{};
    /// Before it begins the relay cools down for this many seconds; 0: it does not need to.
    double coolingSeconds = 0.0;
};

/// Hears what a run does, on the start thread.
class ITestRunListener {
public:
    virtual ~ITestRunListener() = default;

    /// Several times within a phase.
    virtual void onPhase(const RunPhase& phase) = 0;
    /// `index`: which of the plan's points, from 0.
    virtual void onPoint(std::size_t index, const PointResult& result) = 0;
    virtual void onPickUp(const RampResult& result) = 0;
    virtual void onDropOff(const RampResult& result) = 0;
};

/// The test itself: every point of the plan, then pick-up and drop-off, unless the settings say that they are
/// not measured. Made for one run, on the start thread.
///
/// Every measurement is one sequence on the device, so all times are
/// the device's own. A ramp runs twice: with coarse steps, and with fine ones where the coarse ones have
/// found the change.
class TestRun {
public:
    /// The device, the control and the listener outlive it. The plan suits the settings and the device.
    TestRun(const RelaySettings& settings, const TestPlan& plan, KesDevice::Kesto& kesto,
            KesMeasure::RunControl& control, ITestRunListener& listener);
    /// A part of the test, on a relay that is as warm as the budget says. The order has the plan's points by
    /// their numbers from 0 on, then pick-up and drop-off.
    TestRun(const RelaySettings& settings, const TestPlan& plan, KesDevice::Kesto& kesto,
            KesMeasure::RunControl& control, ITestRunListener& listener, std::vector<std::size_t> order,
            const KesMeasure::HeatBudget& heat);

    /// How warm the relay is when the run has ended.
    const KesMeasure::HeatBudget& getHeat() const { return *_runner.getBudget(); }

    /// Returns when everything is measured, the relay did not do what was waited for and the plan does not go
    /// on, the run was stopped, or the device failed; all outputs are zero then.
    RunEnd execute();

    /// Why the device failed, or why the test was stopped by itself; else empty.
    const std::string& getError() const { return _error; }

private:
    using Outcome = KesMeasure::StepRunner::Outcome;
    using Multiples = std::vector<double>;

    /// `number`: as in the order of the run.
    RunEnd _measure(std::size_t number);
    RunEnd _measurePoints(std::size_t index);
    RunEnd _measurePickUp();
    RunEnd _measureDropOff();
    RunEnd _measurePoint(PointResult& result);
    bool _evaluatePoint(PointResult& result);
    /// Coarse, then fine. The function runs the steps for the multiples and returns the result.
    template <typename Measure>
    RunEnd _measureRamp(const Ramp& ramp, RampResult& result, Measure measure);
    RunEnd _runPickUp(const Multiples& multiples, RampResult& result);
    RunEnd _runDropOff(const Multiples& multiples, RampResult& result);
    /// `Complete` also when the relay has not reset; see the state.
    RunEnd _run(const KesDriver::OutputSequence& sequence, MeasureState& state);
    RunEnd _judge(MeasureState state) const;
    RunEnd _fail(std::string error);
    void _announce(const RunPhase& phase);
    void _tell();

    std::vector<double> _getWeights() const;
    /// How long it is expected to take, in seconds, as the next one.
    double _pointWeight(const PlannedPoint& point) const;
    double _rampWeight(const Ramp& ramp, double dwell) const;

    const RelaySettings _settings;
    const TestPlan _plan;
    const std::vector<PlannedPoint> _points;
    const KesMeasure::StepGuard _guard;
    ITestRunListener& _listener;
    KesMeasure::StepRunner _runner;
    const std::vector<std::size_t> _order;
    KesMeasure::RunClock _clock;
    RunPhase _phase;
    std::string _error;
};

} // namespace Overcurrent
