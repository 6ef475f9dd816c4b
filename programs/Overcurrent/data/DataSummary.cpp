#include <Overcurrent/data/DataSummary.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/Language.h>
#include <KesCommon/StringHelper.h>

namespace Overcurrent {

namespace {

const char* formOf(std::size_t count)
{
    if (lng::language != lng::Russian)
        return count == 1 ? "Summary.one" : "Summary.many";
    const bool isTeen = count / 10 % 10 == 1;
    if (count % 10 == 1 && !isTeen)
        return "Summary.one";
    return count % 10 >= 2 && count % 10 <= 4 && !isTeen ? "Summary.few" : "Summary.many";
}

} // namespace

std::size_t DataSummary::countMeasured(const TestResults& results)
{
    return results.points.size() + (results.pickUp ? 1U : 0U) + (results.dropOff ? 1U : 0U);
}

std::string DataSummary::text(const std::optional<TestResults>& results)
{
    using lng::Overcurrent::get;
    if (!results || countMeasured(*results) == 0)
        return get("Summary.noResults");
    const std::size_t count = countMeasured(*results);
    // Without the seconds.
    return Kes::StringHelper::format(get(formOf(count)), count, results->startedAt.substr(0, 16));
}

} // namespace Overcurrent
