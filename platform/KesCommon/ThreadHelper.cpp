#include <KesCommon/ThreadHelper.h>

#include <KesCommon/SignalGate.h>
#include <KesCommon/WaitService.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <pthread.h>

namespace Kes::ThreadHelper {

namespace {

constexpr std::size_t longestName = 15;

/// A std::thread can only be asked for its end by joining it, so another thread does that.
void joinServing(std::thread& thread)
{
    std::mutex mutex;
    std::condition_variable ended;
    bool hasEnded = false;
    std::thread joiner([&] {
        setCurrentThreadName("Kes_Join");
        thread.join();
        std::lock_guard lock(mutex);
        hasEnded = true;
        ended.notify_one();
    });
    while (true) {
        WaitService::serve();
        std::unique_lock lock(mutex);
        if (ended.wait_for(lock, std::chrono::milliseconds(1), [&] { return hasEnded; }))
            break;
    }
    joiner.join();
}

} // namespace

void setCurrentThreadName(const std::string& name)
{
    auto length = name.size();
    if (length > longestName) {
        length = longestName;
        while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0U) == 0x80U)
            --length;
    }
    pthread_setname_np(pthread_self(), name.substr(0, length).c_str());
}

std::string getCurrentThreadName()
{
    char name[longestName + 1] = {};
    pthread_getname_np(pthread_self(), name, sizeof name);
    return name;
}

void join(std::thread& thread)
{
    if (!thread.joinable())
        return;
    const SignalGate::Release release;
    if (WaitService::isServingThread() && thread.get_id() != std::this_thread::get_id())
        joinServing(thread);
    else
        thread.join();
}

} // namespace Kes::ThreadHelper
