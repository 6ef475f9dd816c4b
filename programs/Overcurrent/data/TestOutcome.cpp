#include <Overcurrent/data/TestOutcome.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>

namespace Overcurrent::TestOutcome {

using KesMeasure::Outcome;
using KesMeasure::Verdict;

Outcome create(const TestResults* results, bool areResultsLost)
{
    using lng::Overcurrent::get;
    if (!results)
        return Outcome::withoutTest(areResultsLost);
    const auto verdict = Evaluation::verdict(*results);
    const std::string title = Outcome::getTitle(verdict);
    const std::size_t planned = results->plan.countPoints();
    const std::size_t measured = results->points.size();
    const std::size_t passed = Evaluation::countPassed(*results);
    const auto outcome = [&](const char* key, const auto&... counts) {
        return Outcome{Kes::StringHelper::format(get(key), title, counts...), Outcome::getMark(verdict)}
            .withCircumstances(*results);
    };
    if (results->end == RunEnd::Ended)
        return outcome("Outcome.ended", measured, planned, passed);
    if (results->end != RunEnd::Complete)
        return outcome("Outcome.partly", measured, planned, passed);
    const bool areOnlyPointsPassed = verdict == Verdict::Failed && passed == planned;
    return outcome(areOnlyPointsPassed ? "Outcome.valuesFailed" : "Outcome.counts", passed, planned);
}

} // namespace Overcurrent::TestOutcome
