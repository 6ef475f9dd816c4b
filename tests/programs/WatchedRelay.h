#pragma once

#include <support/SimulatedRelay.h>

#include <algorithm>
#include <atomic>
#include <chrono>

namespace KesTest {

/// Notes what it has seen of current IA, on the device's thread.
class WatchedRelay : public SimulatedRelay {
public:
    using SimulatedRelay::SimulatedRelay;

    void applyOutputs(const KesDriver::OutputState& outputs, KesDriver::DeviceTime time) override
    {
        const double seconds = std::chrono::duration<double>(time - _since).count();
        const double amperes = outputs.currents[0].magnitude;
        if (_amperes > 0.0)
            carried = carried + seconds;
        if (amperes > 0.0 && _amperes == 0.0)
            shortestRest = std::min(shortestRest.load(), seconds);
        if (amperes > 0.0 || _amperes > 0.0)
            _since = time;
        _amperes = amperes;
        largest = std::max(largest.load(), amperes);
        SimulatedRelay::applyOutputs(outputs, time);
    }

    std::atomic<double> largest{0.0};
    /// In seconds: with current in all, and the shortest one without.
    std::atomic<double> carried{0.0};
    std::atomic<double> shortestRest{1e9};

private:
    double _amperes = 0.0;
    KesDriver::DeviceTime _since{0};
};

} // namespace KesTest
