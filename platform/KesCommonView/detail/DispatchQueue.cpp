#include <KesCommonView/detail/DispatchQueue.h>

#include <KesCommon/WaitService.h>

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
    {
        std::lock_guard lock(_mutex);
        if (!_open)
            return false;
        _posted.push_back(std::move(function));
        if (!_wake())
            return true;
    }
    WaitService::ring();
    return true;
}

DispatchQueue::Function DispatchQueue::take()
{
    if (_next == _taken.size()) {
        _taken.clear();
        _next = 0;
        std::lock_guard lock(_mutex);
        _taken.swap(_posted);
        if (_taken.empty()) {
            _fallAsleep();
            return {};
        }
    }
    return std::move(_taken[_next++]);
}

void DispatchQueue::close()
{
    // The functions are destroyed when both locals go: outside the lock, since what they have captured may
    // post again.
    Functions posted;
    const auto taken = std::exchange(_taken, {});
    _next = 0;
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

bool DispatchQueue::_wake()
{
    if (std::exchange(_awake, true))
        return false;
    [[maybe_unused]] const auto result = eventfd_write(_descriptor, 1);
    return true;
}

void DispatchQueue::_fallAsleep()
{
    if (std::exchange(_awake, false)) {
        eventfd_t value = 0;
        [[maybe_unused]] const auto result = eventfd_read(_descriptor, &value);
    }
}

} // namespace Kes
