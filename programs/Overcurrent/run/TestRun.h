#pragma once

#include <Overcurrent/data/TestResults.h>

#include <KesDevice/Kesto.h>
#include <KesMeasure/RunControl.h>
#include <KesMeasure/SequenceRecorder.h>

#include <string>
#include <vector>

namespace Overcurrent {

/// Where a run is.
struct RunPhase {
    enum class Kind { Point, PickUp, DropOff };

    Kind kind = Kind::Point;
    /// For a point: which one, from 1, of how many, and its multiple of Is.
    std::size_t number = 0;
    std::size_t count = 0;
    double multiple = 0.0;
    /// The share of the expected duration that is over, from 0 to 1.
    double progress = 0.0;
};

/// Hears what a run does, on the start thread.
class ITestRunListener {
public:
    virtual ~ITestRunListener() = default;

    virtual void onPhase(const RunPhase& phase) = 0;
    virtual void onPoint(const PointResult& result) = 0;
    virtual void onPickUp(const RampResult& result) = 0;
    virtual void onDropOff(const RampResult& result) = 0;
};

/// The test itself: every point of the plan, then pick-up and drop-off. Made for one run, on the start
/// thread.
///
/// Current is put out on the first phase. The trip contact is wired to input 1, the start contact to input 2.
/// Every measurement is one sequence on the device, so all times are the device's own.
class TestRun {
public:
    static constexpr unsigned tripInput = 1;
    static constexpr unsigned startInput = 2;

    /// The device, the control and the listener outlive it. The plan suits the settings and the device.
    TestRun(const RelaySettings& settings, const TestPlan& plan, KesDevice::Kesto& kesto,
            KesMeasure::RunControl& control, ITestRunListener& listener);

    /// Returns when everything is measured, the run was stopped, or the device failed; all outputs are zero
    /// then.
    RunEnd execute();

    /// Why the device failed.
    const std::string& getError() const { return _error; }

private:
    RunEnd _measurePoints();
    RunEnd _measurePickUp();
    RunEnd _measureDropOff();
    RunEnd _runRamp(KesDriver::OutputSequence sequence, const Ramp& ramp, bool endsOnStart,
                    KesMeasure::SequenceRecord& record);
    bool _evaluatePoint(PointResult& result);
    RunEnd _run(const KesDriver::OutputSequence& sequence);
    RunEnd _fail(std::string error);
    void _announce(RunPhase phase);

    KesDriver::OutputStep _step(double multiple, double seconds) const;
    double _pointWeight(double multiple) const;
    double _rampWeight(const Ramp& ramp) const;

    const RelaySettings _settings;
    const TestPlan _plan;
    ITestRunListener& _listener;
    KesMeasure::SequenceRecorder _recorder;
    double _wholeWeight = 0.0;
    double _doneWeight = 0.0;
    std::string _error;
};

} // namespace Overcurrent
