#include <KesDriver/simulated/serving/detail/Outbox.h>

#include <utility>

namespace KesDriver {

Outbox::Outbox(Write write, WriteSome writeSome, std::function<void()> overflow)
    : _write(std::move(write)),
      _writeSome(std::move(writeSome)),
      _overflow(std::move(overflow)),
      _worker("KesSessionOut", [this] { _run(); })
{}

Outbox::~Outbox()
{
    {
        std::lock_guard lock(_mutex);
        _isOver = true;
        _changed.notify_all();
    }
    _worker.wait();
}

void Outbox::send(std::string line)
{
    _add(std::move(line), false);
}

void Outbox::answer(std::string line)
{
    _add(std::move(line), true);
}

void Outbox::_add(std::string line, bool isDelayed)
{
    line += '\n';
    std::lock_guard lock(_mutex);
    if (_isOver)
        return;
    const auto delay = isDelayed ? _delay : _delay.zero();
    if (_isFree() && delay == delay.zero())
        line.erase(0, _writeSome(line));
    if (line.empty())
        return;
    if (_bytes + line.size() > capacity) {
        _isOver = true;
        _overflow();
        _changed.notify_all();
        return;
    }
    _bytes += line.size();
    _lines.push_back({std::move(line), std::chrono::steady_clock::now() + delay});
    _changed.notify_all();
}

void Outbox::setDelay(std::chrono::milliseconds delay)
{
    std::lock_guard lock(_mutex);
    _delay = delay;
}

void Outbox::setSilent(bool isSilent)
{
    std::lock_guard lock(_mutex);
    _isSilent = isSilent;
    _changed.notify_all();
}

void Outbox::finish(std::chrono::milliseconds longest)
{
    std::unique_lock lock(_mutex);
    _changed.wait_for(lock, longest, [&] { return _isOver || _isSilent || (_lines.empty() && !_isWriting); });
    _isOver = true;
    _changed.notify_all();
}

/// Whether nothing has to be sent before what comes next. With the lock.
bool Outbox::_isFree() const
{
    return _lines.empty() && !_isWriting && !_isSilent;
}

/// False at the end.
bool Outbox::_waitForLine(std::unique_lock<std::mutex>& lock)
{
    while (!_isOver) {
        if (_isSilent || _lines.empty())
            _changed.wait(lock);
        else if (const auto due = _lines.front().due; due > std::chrono::steady_clock::now())
            _changed.wait_until(lock, due);
        else
            return true;
    }
    return false;
}

void Outbox::_run()
{
    std::unique_lock lock(_mutex);
    while (_waitForLine(lock)) {
        const auto line = std::move(_lines.front().text);
        _lines.pop_front();
        _isWriting = true;
        lock.unlock();
        const bool isSent = _write(line);
        lock.lock();
        _isWriting = false;
        _bytes -= line.size();
        _isOver |= !isSent;
        _changed.notify_all();
    }
}

} // namespace KesDriver
