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

Outcome Outcome::create(const TestResults* results)
{
    using lng::Overcurrent::get;
    if (!results)
        return {get("Outcome.None"), Mark::None};
    const auto verdict = Evaluation::verdict(*results);
    const std::string title = get(titleKey(verdict));
    return {Kes::StringHelper::format(get("Outcome.counts"), title, Evaluation::countPassed(*results),
                                      results->plan.multiples.size()),
            toMark(verdict)};
}

} // namespace Overcurrent
