#include <KesDriver/detail/Refusing.h>

#include <algorithm>
#include <iterator>

namespace KesDriver {

namespace {

struct Entry {
    const char* key;
    RefusalCode code;
};

constexpr Entry entries[] = {
    {"State.fault", RefusalCode::Fault},
    {"State.outputOff", RefusalCode::OutputsOff},
    {"State.sequenceRuns", RefusalCode::SequenceRuns},
    {"State.sequenceArmed", RefusalCode::SequenceWaits},
    {"State.notArmed", RefusalCode::NothingWaits},
    {"State.startPassed", RefusalCode::StartPassed},
    {"Sequence.empty", RefusalCode::SettingsConflict},
    {"Sequence.noCondition", RefusalCode::SettingsConflict},
    {"Sequence.tooLong", RefusalCode::TooManySteps},
};

} // namespace

RefusalCode findRefusalCode(const std::string& key)
{
    const auto found = std::find_if(std::begin(entries), std::end(entries),
                                    [&](const Entry& entry) { return entry.key == key; });
    return found == std::end(entries) ? RefusalCode::OutOfRange : found->code;
}

} // namespace KesDriver
