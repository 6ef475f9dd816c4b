#include <Overcurrent/data/Outcome.h>

#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/StringHelper.h>

namespace Overcurrent {

namespace {

using KesProgram::RunVerdict;

const char* titleKey(RunVerdict verdict)
{
    switch (verdict) {
    case RunVerdict::Passed:
        return "Outcome.Passed";
    case RunVerdict::Failed:
        return "Outcome.Failed";
    case RunVerdict::Stopped:
        return "Outcome.Stopped";
    case RunVerdict::Fault:
        return "Outcome.Fault";
    case RunVerdict::None:
        break;
    }
    return "Outcome.Running";
}

Mark toMark(RunVerdict verdict)
{
    if (verdict == RunVerdict::None)
        return Mark::None;
    return verdict == RunVerdict::Passed ? Mark::Passed : Mark::Failed;
}

} // namespace

Outcome Outcome::create(const TestResults* results, bool areResultsLost)
{
    using lng::Overcurrent::get;
    if (!results)
        return {get(areResultsLost ? "Outcome.Lost" : "Outcome.None"), Mark::None};
    const auto verdict = Evaluation::verdict(*results);
    const std::string title = get(titleKey(verdict));
    const std::size_t planned = results->plan.multiples.size();
    const std::size_t measured = results->points.size();
    const std::size_t passed = Evaluation::countPassed(*results);
    const auto outcome = [&](const char* key, const auto&... counts) {
        return Outcome{Kes::StringHelper::format(get(key), title, counts...), toMark(verdict)};
    };
    if (results->end != RunEnd::Complete)
        return outcome("Outcome.partly", measured, planned, passed);
    const bool areOnlyPointsPassed = verdict == RunVerdict::Failed && passed == planned;
    return outcome(areOnlyPointsPassed ? "Outcome.valuesFailed" : "Outcome.counts", passed, planned);
}

} // namespace Overcurrent
