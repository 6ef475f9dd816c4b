#include <KesDriver/Outputs.h>

#include <algorithm>

namespace KesDriver {

namespace {

void follow(std::array<Phasor, 3>& phasors, const std::array<PhasorRate, 3>& rates, double seconds)
{
    for (std::size_t i = 0; i < phasors.size(); ++i) {
        phasors[i].magnitude = std::max(0.0, phasors[i].magnitude + rates[i].magnitude * seconds);
        phasors[i].degrees += rates[i].degrees * seconds;
    }
}

} // namespace

OutputState follow(const OutputState& outputs, const OutputRamp& ramp, DeviceTime time)
{
    const double seconds = std::chrono::duration<double>(time).count();
    OutputState result = outputs;
    follow(result.currents, ramp.currents, seconds);
    follow(result.voltages, ramp.voltages, seconds);
    result.currentHertz += ramp.currentHertz * seconds;
    result.voltageHertz += ramp.voltageHertz * seconds;
    return result;
}

} // namespace KesDriver
