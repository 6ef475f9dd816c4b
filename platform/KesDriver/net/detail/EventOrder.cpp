#include <KesDriver/net/detail/EventOrder.h>

#include <KesDriver/net/FieldText.h>

#include <utility>

namespace KesDriver {

namespace {

/// As many as a device gives at once, and as it remembers.
constexpr std::uint64_t mostMissing = 1000;
constexpr std::size_t mostHeld = 65536;

} // namespace

std::vector<EventOrder::Record> EventOrder::take(std::string_view text)
{
    std::vector<Record> due;
    auto record = ValueText::readEvent(text);
    if (record && !_isBroken && (!_held.empty() || record->number > _next))
        _hold(*std::move(record));
    else
        _accept(std::move(record), due);
    return due;
}

void EventOrder::_hold(Record record)
{
    if (_held.empty()) {
        _gap = Gap{_next, record.number - _next};
        _isBroken = _gap->count > mostMissing;
    } else {
        _isBroken = record.number != _held.back().number + 1 || _held.size() == mostHeld;
    }
    _held.push_back(std::move(record));
}

EventOrder::Gap EventOrder::takeGap()
{
    return std::exchange(_gap, std::nullopt).value_or(Gap{});
}

std::vector<EventOrder::Record> EventOrder::fill(std::string_view events)
{
    std::vector<Record> due;
    const auto fields = FieldText::split(events, ',', mostMissing);
    if (!fields) {
        _isBroken = true;
        return due;
    }
    for (const auto field : *fields) {
        const auto text = FieldText::unquote(field);
        _accept(text ? ValueText::readEvent(*text) : std::nullopt, due);
    }
    for (auto& record : std::exchange(_held, {}))
        _accept(std::move(record), due);
    return due;
}

void EventOrder::_accept(std::optional<Record> record, std::vector<Record>& due)
{
    if (_isBroken || !record || record->number != _next || record->time < _lastTime) {
        _isBroken = true;
        return;
    }
    ++_next;
    _lastTime = record->time;
    due.push_back(*std::move(record));
}

} // namespace KesDriver
