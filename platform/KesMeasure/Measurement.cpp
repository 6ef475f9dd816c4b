#include <KesMeasure/Measurement.h>

#include <KesMeasure/Series.h>

#include <utility>

namespace KesMeasure {

Reading Reading::ofSingles(std::vector<double> singles, const Reading& last)
{
    if (last.state == MeasureState::Measured && singles.size() == 1)
        return {last.state, singles.front()};
    const double mean = last.state == MeasureState::Measured ? Series::getMean(singles) : 0.0;
    return {last.state, mean, std::move(singles)};
}

} // namespace KesMeasure
