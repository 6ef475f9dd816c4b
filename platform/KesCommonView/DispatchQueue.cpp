#include "DispatchQueue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

namespace Kes {

namespace {

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
    std::lock_guard lock(_mutex);
    if (!_open)
        return false;
    _posted.push_back(std::move(function));
    _wake();
    return true;
}

DispatchQueue::Function DispatchQueue::take()
{
    if (_taken.empty()) {
        std::lock_guard lock(_mutex);
        _taken.swap(_posted);
        if (_taken.empty()) {
            _fallAsleep();
            return {};
        }
    }
    auto function = std::move(_taken.front());
    _taken.pop_front();
    return function;
}

std::size_t DispatchQueue::size()
{
    std::lock_guard lock(_mutex);
    return _taken.size() + _posted.size();
}

void DispatchQueue::close()
{
    // The functions are destroyed when both locals go: outside the lock, since what they have captured may
    // post again.
    std::deque<Function> posted;
    const auto taken = std::exchange(_taken, {});
    std::lock_guard lock(_mutex);
    _open = false;
    posted.swap(_posted);
    _fallAsleep();
}

void DispatchQueue::open()
{
    std::lock_guard lock(_mutex);
    _open = true;
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
