#include <Overcurrent/data/DataSummary.h>

#include <Overcurrent/text/OvercurrentText.h>

namespace Overcurrent {

std::size_t DataSummary::countMeasured(const TestResults& results)
{
    return results.points.size() + (results.pickUp ? 1U : 0U) + (results.dropOff ? 1U : 0U);
}

std::size_t DataSummary::countPlanned(const TestResults& results)
{
    return results.plan.countPoints() + (results.settings.hasRamps() ? 2U : 0U);
}

std::string DataSummary::text(const std::optional<TestResults>& results)
{
    const std::size_t count = results ? countMeasured(*results) : 0;
    return count > 0 ? results->summarize(count) : lng::Overcurrent::get("Summary.noResults");
}

} // namespace Overcurrent
