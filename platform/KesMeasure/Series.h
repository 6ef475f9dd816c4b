#pragma once

#include <KesCommon/Export.h>

#include <vector>

/// What values that were measured one after the other under the same conditions have in common. Of no values
/// at all it is 0. Any thread.
namespace KesMeasure::Series {

KES_EXPORT double getMean(const std::vector<double>& values);
/// The largest minus the smallest.
KES_EXPORT double getSpread(const std::vector<double>& values);

} // namespace KesMeasure::Series
