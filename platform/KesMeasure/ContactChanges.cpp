#include <KesMeasure/ContactChanges.h>

#include <algorithm>
#include <iterator>

namespace KesMeasure::ContactChanges {

using KesDriver::DeviceTime;
using KesDriver::InputEvent;

namespace {

std::vector<InputEvent> movementsOf(const SequenceRecord& record, unsigned input)
{
    std::vector<InputEvent> movements;
    std::copy_if(record.inputs.begin(), record.inputs.end(), std::back_inserter(movements),
                 [&](const InputEvent& change) {
                     return change.input == input && change.step && *change.step < record.steps.size();
                 });
    return movements;
}

} // namespace

std::vector<InputEvent> find(const SequenceRecord& record, unsigned input, DeviceTime debounce)
{
    const auto movements = movementsOf(record, input);
    std::vector<InputEvent> changes;
    if (movements.empty())
        return changes;
    bool isClosed = !movements.front().isClosed;
    std::size_t first = 0;
    for (std::size_t i = 0; i < movements.size(); ++i) {
        const bool isLast = i + 1 == movements.size();
        const auto until = isLast ? record.end->time : movements[i + 1].time;
        if (until - movements[i].time < debounce)
            continue;
        if (movements[i].isClosed != isClosed) {
            isClosed = movements[i].isClosed;
            changes.push_back(movements[first]);
            changes.back().isClosed = isClosed;
        }
        first = i + 1;
    }
    return changes;
}

std::optional<InputEvent> findFirst(const SequenceRecord& record, KesDriver::InputCondition condition,
                                    DeviceTime debounce, std::size_t fromStep)
{
    const auto changes = find(record, condition.input, debounce);
    const auto found = std::find_if(changes.begin(), changes.end(), [&](const InputEvent& change) {
        return change.isClosed == condition.isClosed && *change.step >= fromStep;
    });
    return found == changes.end() ? std::nullopt : std::optional(*found);
}

bool isClosedBefore(const SequenceRecord& record, std::size_t step, unsigned input)
{
    bool isClosed = false;
    for (const auto& change : record.inputs)
        if (*change.step < step && change.input == input)
            isClosed = change.isClosed;
    return isClosed;
}

} // namespace KesMeasure::ContactChanges
