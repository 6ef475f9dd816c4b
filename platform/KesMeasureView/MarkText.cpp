#include <KesMeasureView/MarkText.h>

namespace KesMeasure {

std::string withSign(const std::string& word, Mark mark)
{
    switch (mark) {
    case Mark::Passed:
        return "\u2714 " + word;
    case Mark::Failed:
        return "\u2718 " + word;
    case Mark::None:
        break;
    }
    return word;
}

const char* styleClass(Mark mark)
{
    switch (mark) {
    case Mark::Passed:
        return "mark-passed";
    case Mark::Failed:
        return "mark-failed";
    case Mark::None:
        break;
    }
    return "mark-none";
}

} // namespace KesMeasure
