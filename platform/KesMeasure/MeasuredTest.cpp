#include <KesMeasure/MeasuredTest.h>

#include <KesMeasure/MeasureText.h>

#include <KesCommon/Language.h>
#include <KesCommon/StringHelper.h>

namespace KesMeasure {

namespace {

const char* summaryFormOf(std::size_t count)
{
    if (lng::language != lng::Russian)
        return count == 1 ? "Summary.one" : "Summary.many";
    const bool isTeen = count / 10 % 10 == 1;
    if (count % 10 == 1 && !isTeen)
        return "Summary.one";
    return count % 10 >= 2 && count % 10 <= 4 && !isTeen ? "Summary.few" : "Summary.many";
}

} // namespace

Verdict MeasuredTest::judge(bool isPassed) const
{
    switch (end) {
    case RunEnd::Running:
        return Verdict::None;
    case RunEnd::Stopped:
        return Verdict::Stopped;
    case RunEnd::Fault:
        return Verdict::Fault;
    case RunEnd::Ended:
        return Verdict::Failed;
    case RunEnd::Complete:
        break;
    }
    return isPassed ? Verdict::Passed : Verdict::Failed;
}

std::string MeasuredTest::summarize(std::size_t count) const
{
    // Without the seconds.
    return Kes::StringHelper::format(lng::Measure::get(summaryFormOf(count)), count, startedAt.substr(0, 16));
}

} // namespace KesMeasure
