#include <KesDriver/simulated/serving/detail/EventLog.h>

#include <KesDriver/scpi/Error.h>
#include <KesDriver/scpi/Text.h>

#include <algorithm>
#include <utility>

namespace KesDriver {

namespace {

/// A device that talks nonsense must not fill the memory.
constexpr std::size_t longestEvent = 4096;

} // namespace

void EventLog::useFullCapacity()
{
    std::lock_guard lock(_mutex);
    _capacity = fullCapacity;
}

std::uint64_t EventLog::add(DeviceTime time, Content content)
{
    std::lock_guard lock(_mutex);
    const auto number = _last + 1;
    _texts.push_back(Scpi::cut(ValueText::write({number, time, std::move(content)}), longestEvent));
    _last = number;
    if (_texts.size() > _capacity)
        _texts.pop_front();
    for (const auto& [key, sink] : _subscribers)
        sink->send('!' + _texts.back());
    return number;
}

std::uint64_t EventLog::getLast() const
{
    std::lock_guard lock(_mutex);
    return _last;
}

std::vector<std::string> EventLog::read(std::uint64_t from, std::size_t count) const
{
    std::lock_guard lock(_mutex);
    _checkRemembered(from);
    std::vector<std::string> texts;
    for (auto number = from; number <= _last && texts.size() < count; ++number)
        texts.push_back(_texts[number - _getFirst()]);
    return texts;
}

void EventLog::_checkRemembered(std::uint64_t from) const
{
    if (from < _getFirst())
        throw Scpi::Error(Scpi::ErrorCode::CorruptOrStale,
                          "the oldest remembered event is " + std::to_string(_getFirst()));
}

void EventLog::subscribe(const std::shared_ptr<ILineSink>& sink, std::uint64_t from)
{
    std::lock_guard lock(_mutex);
    if (from > 0) {
        _checkRemembered(from);
        for (auto number = from; number <= _last; ++number)
            sink->send('!' + _texts[number - _getFirst()]);
    }
    _subscribers[sink.get()] = sink;
}

void EventLog::unsubscribe(const ILineSink& sink)
{
    std::lock_guard lock(_mutex);
    _subscribers.erase(&sink);
}

} // namespace KesDriver
