#include <KesMeasure/Outcome.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>

namespace KesMeasure {

Outcome Outcome::withoutTest(bool areResultsLost)
{
    return {lng::Measure::get(areResultsLost ? "Outcome.lost" : "Outcome.noTest"), Mark::None};
}

const char* Outcome::getTitle(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Passed:
        return lng::Measure::get("Outcome.Passed");
    case Verdict::Failed:
        return lng::Measure::get("Outcome.Failed");
    case Verdict::Stopped:
        return lng::Measure::get("Outcome.Stopped");
    case Verdict::Fault:
        return lng::Measure::get("Outcome.Fault");
    case Verdict::None:
        break;
    }
    return lng::Measure::get("Outcome.Running");
}

Mark Outcome::getMark(Verdict verdict)
{
    if (verdict == Verdict::None)
        return Mark::None;
    return verdict == Verdict::Passed ? Mark::Passed : Mark::Failed;
}

Outcome Outcome::withCircumstances(const TestCircumstances& circumstances) const
{
    if (!circumstances.isChangedByHand())
        return *this;
    return {Kes::StringHelper::format(lng::Measure::get("Outcome.changedByHand"), text),
            mark == Mark::Passed ? Mark::None : mark};
}

} // namespace KesMeasure
