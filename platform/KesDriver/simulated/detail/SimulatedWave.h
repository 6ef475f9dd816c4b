#pragma once

#include <KesDriver/Outputs.h>

namespace KesDriver {

/// The reference wave of a group of outputs: counts its periods through every change of the frequency. Not
/// synchronised; its owner does that.
class SimulatedWave {
public:
    /// From `time` on the frequency is `hertz` and changes by `hertzPerSecond`.
    void run(DeviceTime time, double hertz, double hertzPerSecond = 0.0);

    /// The wave restarts, at 50 Hz.
    void restart(DeviceTime time);

    /// The first time from `time` on, to the nearest microsecond, at which the wave has the angle if its
    /// frequency stays as it is then; at once for a wave that does not turn.
    DeviceTime find(DeviceTime time, double degrees) const;

private:
    double _getPeriods(DeviceTime time) const;
    double _getHertz(DeviceTime time) const;

    DeviceTime _since{0};
    double _periods = 0.0;
    double _hertz = 50.0;
    double _hertzPerSecond = 0.0;
};

} // namespace KesDriver
