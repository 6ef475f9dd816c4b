#pragma once

#include <KesCommon/Worker.h>
#include <KesDriver/simulated/serving/detail/ILineSink.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>

namespace KesDriver {

/// What a session has still to get, and the thread that sends it in the order in which it came about, so that
/// nobody waits for a reader who does not read. What can be sent at once, before all others and without a
/// wait, is: a thread more on the way of each answer would be felt. Any thread.
class Outbox : public ILineSink {
public:
    /// Sends all the bytes; false when there is nobody any more.
    using Write = std::function<bool(std::string_view bytes)>;
    /// Sends what goes without waiting; says how many bytes that were.
    using WriteSome = std::function<std::size_t(std::string_view bytes)>;
    static constexpr std::size_t capacity = std::size_t{4} << 20U;

    /// `overflow` is called when more waits than the capacity; it must not wait.
    Outbox(Write write, WriteSome writeSome, std::function<void()> overflow);
    /// What waits is lost. `write` has to return by itself.
    ~Outbox() override;

    void send(std::string line) override;
    /// As `send`, after the delay.
    void answer(std::string line);
    void setDelay(std::chrono::milliseconds delay);
    void setSilent(bool isSilent);

    /// Waits until all is sent, at most that long, and not at all while it is silent.
    void finish(std::chrono::milliseconds longest);

private:
    using Time = std::chrono::steady_clock::time_point;
    struct Line {
        std::string text;
        Time due;
    };

    void _add(std::string line, bool isDelayed);
    void _run();
    bool _isFree() const;
    bool _waitForLine(std::unique_lock<std::mutex>& lock);

    const Write _write;
    const WriteSome _writeSome;
    const std::function<void()> _overflow;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::deque<Line> _lines;
    std::size_t _bytes = 0;
    bool _isWriting = false;
    bool _isSilent = false;
    bool _isOver = false;
    std::chrono::milliseconds _delay{0};
    Kes::Worker _worker;
};

} // namespace KesDriver
