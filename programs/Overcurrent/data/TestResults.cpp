#include <Overcurrent/data/TestResults.h>

#include <numeric>
#include <utility>

namespace Overcurrent {

void PointResult::takeSingles(std::vector<KesDriver::DeviceTime> times)
{
    const bool isMeasured = state == MeasureState::Measured;
    if (!isMeasured)
        time = KesDriver::DeviceTime(0);
    else if (!times.empty())
        time = std::accumulate(times.begin(), times.end(), KesDriver::DeviceTime(0)) /
               static_cast<std::int64_t>(times.size());
    if (times.size() > 1 || !isMeasured)
        singles = std::move(times);
}

} // namespace Overcurrent
