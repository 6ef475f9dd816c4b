#include <KesCommon/Worker.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommon/ThreadHelper.h>
#include <KesCommon/ThreadWaits.h>
#include <KesCommon/WaitCondition.h>

#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace Kes {

/// Outlives the worker where the worker dies in its own work, or in a function that a wait for it has served.
class Worker::Thread : public std::enable_shared_from_this<Thread> {
public:
    void start(const std::string& name, std::function<void()> work)
    {
        // The thread gets the lock when its handle and its id are there.
        std::lock_guard lock(_mutex);
        _thread = std::thread([self = shared_from_this(), name, work = std::move(work)]() mutable {
            ThreadHelper::setCurrentThreadName(name);
            self->_run(std::exchange(work, nullptr));
        });
        _id = _thread.get_id();
        _isRunning = true;
    }

    bool isRunning() const
    {
        std::lock_guard lock(_mutex);
        return _isRunning;
    }

    /// Whether the caller is the work. The id of an ended thread may have come to another one.
    bool isThisThread() const
    {
        std::lock_guard lock(_mutex);
        return _isRunning && _id == std::this_thread::get_id();
    }

    void wait()
    {
        std::unique_lock lock(_mutex);
        if (_isRunning) {
            const ThreadWaits::WaitingFor waiting(_id);
            _ended.wait(lock, [this] { return !_isRunning; });
        }
        // Several may have waited. What is left of the thread takes no lock.
        if (_thread.joinable())
            _thread.join();
    }

    void detach()
    {
        std::lock_guard lock(_mutex);
        _thread.detach();
    }

private:
    void _run(std::function<void()> work)
    {
        try {
            work();
        } catch (...) {
            KesLog::Log::writeError("A worker thread has thrown: " + getCurrentExceptionText());
        }
        work = nullptr;
        std::lock_guard lock(_mutex);
        _isRunning = false;
        ThreadWaits::endThread();
        _ended.notifyAll();
    }

    mutable std::mutex _mutex;
    WaitCondition _ended;
    std::thread _thread;
    std::thread::id _id;
    bool _isRunning = false;
};

Worker::Worker() = default;

Worker::Worker(const std::string& threadName, std::function<void()> work)
    : _thread(std::make_shared<Thread>())
{
    _thread->start(threadName, std::move(work));
}

std::optional<Worker> Worker::tryStart(const std::string& threadName, std::function<void()> work)
{
    try {
        return Worker(threadName, std::move(work));
    } catch (const std::system_error& error) {
        KesLog::Log::writeError("There is no thread for " + threadName + ": " + error.what());
        return std::nullopt;
    }
}

Worker::~Worker()
{
    _leave();
}

Worker::Worker(Worker&& other) noexcept : _thread(std::move(other._thread)) {}

Worker& Worker::operator=(Worker&& other) noexcept
{
    auto next = std::move(other._thread);
    // A function that the wait serves may give this worker other work.
    while (_thread && _thread != next) {
        const auto left = _thread;
        _leave();
        if (_thread == left)
            _thread = nullptr;
    }
    _thread = std::move(next);
    return *this;
}

bool Worker::isRunning() const
{
    return _thread && _thread->isRunning();
}

void Worker::wait()
{
    // A served function may move or destroy the worker meanwhile.
    if (const auto thread = _thread; thread && !thread->isThisThread())
        thread->wait();
}

void Worker::_leave()
{
    if (_thread && _thread->isThisThread())
        _thread->detach();
    else
        wait();
}

} // namespace Kes
