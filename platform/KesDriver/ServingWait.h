#pragma once

#include <KesCommon/SignalGate.h>
#include <KesCommon/WaitService.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace KesDriver {

/// Waits on the condition until the predicate holds, for something that another thread can only do by
/// emitting signals or by way of the GUI thread: the caller lets go of the signal gate meanwhile, and the GUI
/// thread goes on serving its queue. The lock is held on entry, on return and while the predicate is asked.
/// Any thread.
template <typename Predicate>
void servingWait(std::unique_lock<std::mutex>& lock, std::condition_variable& condition, Predicate isReady)
{
    constexpr std::chrono::milliseconds servingInterval{1};
    while (!isReady()) {
        // The gate comes before every other lock, so it is taken back without this one.
        lock.unlock();
        {
            const Kes::SignalGate::Release release;
            Kes::WaitService::serve();
            lock.lock();
            if (Kes::WaitService::isServingThread())
                condition.wait_for(lock, servingInterval, isReady);
            else
                condition.wait(lock, isReady);
            lock.unlock();
        }
        lock.lock();
    }
}

} // namespace KesDriver
