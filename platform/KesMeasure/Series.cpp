#include <KesMeasure/Series.h>

#include <algorithm>
#include <numeric>

namespace KesMeasure::Series {

double getMean(const std::vector<double>& values)
{
    return values.empty()
               ? 0.0
               : std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double getSpread(const std::vector<double>& values)
{
    if (values.empty())
        return 0.0;
    const auto [least, most] = std::minmax_element(values.begin(), values.end());
    return *most - *least;
}

} // namespace KesMeasure::Series
