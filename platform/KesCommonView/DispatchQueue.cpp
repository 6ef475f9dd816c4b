#include "DispatchQueue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

namespace Kes {

namespace {

/// Functions in one batch: 8 KiB.
constexpr std::size_t batchSize = 256;
/// More empty batches than this (four megabytes) are given up when the queue has run empty: a flood that came
/// once may come again, and memory that is new to the process costs more than all the rest of a post.
constexpr std::size_t sparesKept = 512;

int makeDescriptor()
{
    const int descriptor = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "eventfd");
    return descriptor;
}

} // namespace

DispatchQueue::DispatchQueue() : _descriptor(makeDescriptor()) {}

DispatchQueue::~DispatchQueue()
{
    ::close(_descriptor);
}

bool DispatchQueue::push(Function&& function)
{
    std::unique_lock lock(_mutex);
    _makeRoom(lock);
    if (!_open)
        return false;
    _posted.back().push_back(std::move(function));
    ++_postedCount;
    _wake();
    return true;
}

DispatchQueue::Function DispatchQueue::take()
{
    if (_taken.empty()) {
        Batches surplus;
        std::lock_guard lock(_mutex);
        _taken.swap(_posted);
        if (_taken.empty()) {
            _fallAsleep();
            if (_spare.size() > sparesKept)
                surplus.swap(_spare);
            return {};
        }
    }
    auto& batch = _taken.front();
    auto function = std::move(batch[_next]);
    ++_takenCount;
    if (++_next == batch.size()) {
        batch.clear();
        _next = 0;
        std::lock_guard lock(_mutex);
        _spare.splice(_spare.begin(), _taken, _taken.begin());
    }
    return function;
}

std::size_t DispatchQueue::size()
{
    std::lock_guard lock(_mutex);
    return _postedCount - _takenCount;
}

void DispatchQueue::close()
{
    // The functions are destroyed when both locals go: outside the lock, since what they have captured may
    // post again.
    Batches posted;
    const auto taken = std::exchange(_taken, {});
    _next = 0;
    std::lock_guard lock(_mutex);
    _open = false;
    posted.swap(_posted);
    _takenCount = _postedCount;
    _fallAsleep();
}

void DispatchQueue::open()
{
    std::lock_guard lock(_mutex);
    _open = true;
}

void DispatchQueue::_makeRoom(std::unique_lock<std::mutex>& lock)
{
    while (_open && (_posted.empty() || _posted.back().size() == batchSize)) {
        if (_spare.empty()) {
            // Made and written to once while other threads can post: new memory is what takes longest here.
            lock.unlock();
            Batches fresh;
            fresh.emplace_back(batchSize).clear();
            lock.lock();
            _spare.splice(_spare.end(), fresh);
        } else {
            _posted.splice(_posted.end(), _spare, _spare.begin());
        }
    }
}

void DispatchQueue::_wake()
{
    if (!std::exchange(_awake, true)) {
        [[maybe_unused]] const auto result = eventfd_write(_descriptor, 1);
    }
}

void DispatchQueue::_fallAsleep()
{
    if (std::exchange(_awake, false)) {
        eventfd_t value = 0;
        [[maybe_unused]] const auto result = eventfd_read(_descriptor, &value);
    }
}

} // namespace Kes
