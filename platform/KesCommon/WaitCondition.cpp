#include <KesCommon/WaitCondition.h>

#include <KesCommon/SignalGate.h>
#include <KesCommon/WaitService.h>

namespace Kes {

namespace {

/// Counts a wait for its scope when the serving thread makes it.
class ServingWait {
public:
    explicit ServingWait(std::atomic<int>& count)
        : _count(count), _own(WaitService::isServingThread() ? 1 : 0)
    {
        _count += _own;
    }
    ~ServingWait() { _count -= _own; }
    ServingWait(const ServingWait&) = delete;
    ServingWait& operator=(const ServingWait&) = delete;

private:
    std::atomic<int>& _count;
    const int _own;
};

} // namespace

void WaitCondition::notifyAll()
{
    _bell.ring();
    if (_servingWaits > 0)
        WaitService::ring();
}

void WaitCondition::wait(Lock& lock, const Predicate& predicate)
{
    waitUntil(lock, Bell::never, predicate);
}

bool WaitCondition::waitFor(Lock& lock, std::chrono::milliseconds time, const Predicate& predicate)
{
    return waitUntil(lock, std::chrono::steady_clock::now() + time, predicate);
}

bool WaitCondition::waitUntil(Lock& lock, TimePoint end, const Predicate& predicate)
{
    bool holds = predicate();
    while (!holds && std::chrono::steady_clock::now() < end) {
        lock.unlock();
        _waitReleased(lock, end, predicate);
        lock.lock();
        holds = predicate();
    }
    return holds;
}

/// Lets go of the gate until the predicate holds or the time has come; the lock is not held on either side.
void WaitCondition::_waitReleased(Lock& lock, TimePoint end, const Predicate& predicate)
{
    const SignalGate::Release release;
    // Counted before the predicate is asked: what changes afterwards rings.
    const ServingWait counted(_servingWaits);
    while (true) {
        const bool serving = WaitService::isServingThread();
        const Bell& bell = serving ? WaitService::getBell() : _bell;
        const auto ticket = bell.getTicket();
        lock.lock();
        const bool holds = predicate();
        lock.unlock();
        if (holds || std::chrono::steady_clock::now() >= end)
            return;
        if (!serving || !WaitService::serve())
            bell.sleep(ticket, end);
    }
}

} // namespace Kes
