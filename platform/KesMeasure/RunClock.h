#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/Outputs.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace KesMeasure {

/// How far a run is. Times in seconds of the device's clock.
struct RunTimes {
    /// Of the expected duration, from 0 to 1.
    double share = 0.0;
    double elapsed = 0.0;
    /// As the plan expects it.
    double remaining = 0.0;
};

/// Computes how far a run is, from the expected times of its steps and from the device's clock. A value;
/// lives during a run, on the start thread.
class KES_EXPORT RunClock {
public:
    /// What each step is expected to take, in the order of the run, in seconds.
    explicit RunClock(std::vector<double> steps);

    /// The first step begins, or the next one.
    void beginStep();
    /// The present step takes that many seconds longer than expected, for a reason known before.
    void extendStep(double seconds);
    /// The present time of the device's clock. The first one is the beginning of the run.
    void setTime(KesDriver::DeviceTime now);

    /// The share never goes back.
    RunTimes getTimes();

private:
    std::vector<double> _steps;
    /// Which step, from 1; 0 before the first.
    std::size_t _number = 0;
    std::optional<KesDriver::DeviceTime> _begin;
    KesDriver::DeviceTime _stepBegin{0};
    KesDriver::DeviceTime _now{0};
    double _share = 0.0;
};

} // namespace KesMeasure
