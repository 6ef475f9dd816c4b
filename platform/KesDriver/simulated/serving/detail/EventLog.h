#pragma once

#include <KesDriver/net/ValueText.h>
#include <KesDriver/simulated/serving/detail/ILineSink.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace KesDriver {

/// The last events of a device, numbered from 1, and the sessions that get new ones. Any thread.
class EventLog {
public:
    using Content = ValueText::EventRecord::Content;
    /// How many events it remembers, at first and for clients that may ask for what they have missed.
    static constexpr std::size_t usualCapacity = 1000;
    static constexpr std::size_t fullCapacity = 65536;

    /// From now on it remembers as many as it can.
    void useFullCapacity();

    /// The number that it has got.
    std::uint64_t add(DeviceTime time, Content content);
    std::uint64_t getLast() const;
    /// Up to `count` events from that number on, as texts without the "!". Throws Scpi::Error when the first
    /// one has been forgotten.
    std::vector<std::string> read(std::uint64_t from, std::size_t count) const;

    /// From that number on, or from the next event on for 0, each event goes to the sink as a line. A second
    /// call for a sink counts again. Throws as `read` does.
    void subscribe(const std::shared_ptr<ILineSink>& sink, std::uint64_t from);
    void unsubscribe(const ILineSink& sink);

private:
    std::uint64_t _getFirst() const { return _last + 1 - _texts.size(); }
    void _checkRemembered(std::uint64_t from) const;

    mutable std::mutex _mutex;
    std::size_t _capacity = usualCapacity;
    std::deque<std::string> _texts;
    std::uint64_t _last = 0;
    std::map<const ILineSink*, std::shared_ptr<ILineSink>> _subscribers;
};

} // namespace KesDriver
