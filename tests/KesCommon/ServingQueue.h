#pragma once

#include <KesCommon/WaitService.h>

#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <utility>

namespace KesTest {

/// A GUI queue in small: the thread that makes it serves it in its waits.
class ServingQueue {
public:
    ServingQueue()
    {
        Kes::WaitService::install([this] { return _serve(); });
    }
    ~ServingQueue() { Kes::WaitService::uninstall(); }
    ServingQueue(const ServingQueue&) = delete;
    ServingQueue& operator=(const ServingQueue&) = delete;

    /// Any thread.
    void post(std::function<void()> function)
    {
        std::unique_lock lock(_mutex);
        const bool wasEmpty = _functions.empty();
        _functions.push_back(std::move(function));
        lock.unlock();
        if (wasEmpty)
            Kes::WaitService::ring();
    }

    /// Another thread: runs the function on the serving thread and waits for it.
    void wait(const std::function<void()>& function)
    {
        std::packaged_task<void()> task(function);
        auto done = task.get_future();
        post([&task] { task(); });
        done.wait();
    }

    /// Serving thread: how often a wait has looked into the queue.
    int looks = 0;

private:
    bool _serve()
    {
        ++looks;
        std::unique_lock lock(_mutex);
        if (_functions.empty())
            return false;
        const auto function = std::move(_functions.front());
        _functions.pop_front();
        lock.unlock();
        function();
        return true;
    }

    std::mutex _mutex;
    std::deque<std::function<void()>> _functions;
};

} // namespace KesTest
