#include <KesCommonView/ApplicationDispatcher.h>

#include <KesCommon/ExceptionText.h>
#include <KesCommon/Log.h>
#include <KesCommon/SignalGate.h>
#include <KesCommon/ThreadWaits.h>
#include <KesCommon/WaitService.h>
#include <KesCommonView/detail/DispatchQueue.h>

#include <glib-unix.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <mutex>
#include <new>
#include <thread>
#include <utility>

namespace Kes {

namespace {

/// Below GTK's own work on events (0), layout (110) and drawing (120), above its idle handlers (200).
constexpr int priority = 125;
constexpr std::chrono::milliseconds slice{2};

/// A function that another thread waits for.
class Turn {
public:
    explicit Turn(std::function<void()> function) : _function(std::move(function)) {}

    /// Waiting thread.
    void wait()
    {
        std::unique_lock lock(_mutex);
        _ended.wait(lock, [this] { return _hasEnded; });
        if (_error)
            std::rethrow_exception(std::exchange(_error, nullptr));
    }

    void run()
    {
        std::exception_ptr error;
        try {
            const Scope scope(*this);
            const auto function = std::exchange(_function, nullptr);
            function();
        } catch (...) {
            error = std::current_exception();
        }
        end(std::move(error));
    }

    /// Without effect after the first call. What the function has captured does not outlive the wait.
    void end(std::exception_ptr error)
    {
        if (_function) {
            const Scope scope(*this);
            _function = nullptr;
        }
        std::lock_guard lock(_mutex);
        if (std::exchange(_hasEnded, true))
            return;
        _error = std::move(error);
        _ended.notify_all();
    }

private:
    /// What happens here on behalf of the waiting thread: with its gate, while it waits for this one.
    struct Scope {
        explicit Scope(Turn& turn) : gate(turn._loan), waiting(std::this_thread::get_id(), turn._waiting) {}
        SignalGate::Loan::Use gate;
        ThreadWaits::WaitingFor waiting;
    };

    std::function<void()> _function;
    SignalGate::Loan _loan;
    const std::thread::id _waiting = std::this_thread::get_id();
    std::mutex _mutex;
    std::condition_variable _ended;
    std::exception_ptr _error;
    bool _hasEnded = false;
};

/// The queue's hold on a turn: whether it runs or is dropped, the wait ends.
class QueuedTurn {
public:
    explicit QueuedTurn(std::shared_ptr<Turn> turn) : _turn(std::move(turn)) {}
    ~QueuedTurn() { _turn->end(nullptr); }
    QueuedTurn(const QueuedTurn&) = delete;
    QueuedTurn& operator=(const QueuedTurn&) = delete;

    void run() { _turn->run(); }

private:
    std::shared_ptr<Turn> _turn;
};

/// GLib is C: nothing may be thrown through its main loop.
void runCaught(const std::function<void()>& function)
{
    try {
        function();
    } catch (...) {
        KesLog::Log::writeError("A function on the GUI thread has thrown: " + getCurrentExceptionText());
    }
}

} // namespace

class ApplicationDispatcher::Queue : public DispatchQueue {
public:
    /// Read by every thread; away from what the GUI thread writes.
    alignas(64) std::atomic<std::thread::id> guiThread;
    GSource* source = nullptr;

    bool runOne()
    {
        const auto function = take();
        if (function)
            runCaught(function);
        return static_cast<bool>(function);
    }

    /// Whether there was anything to run.
    bool runSlice()
    {
        const auto end = std::chrono::steady_clock::now() + slice;
        bool hasRun = false;
        while (runOne()) {
            hasRun = true;
            if (std::chrono::steady_clock::now() >= end)
                break;
        }
        return hasRun;
    }

    void stopSource()
    {
        g_source_destroy(source);
        g_source_unref(std::exchange(source, nullptr));
    }
};

ApplicationDispatcher::ApplicationDispatcher() : _queue(std::make_unique<Queue>()) {}

ApplicationDispatcher::~ApplicationDispatcher() = default;

ApplicationDispatcher& ApplicationDispatcher::getInstance()
{
    // Never destroyed: threads may post until the very end of the process.
    alignas(ApplicationDispatcher) static std::byte place[sizeof(ApplicationDispatcher)];
    static auto* const instance = ::new (place) ApplicationDispatcher;
    return *instance;
}

bool ApplicationDispatcher::isGuiThread() const
{
    return _queue->guiThread.load() == std::this_thread::get_id();
}

void ApplicationDispatcher::begin(std::function<void()> function)
{
    if (function)
        _queue->push(std::move(function));
}

void ApplicationDispatcher::wait(std::function<void()> function)
{
    if (!function)
        return;
    if (isGuiThread()) {
        function();
        return;
    }
    const auto turn = std::make_shared<Turn>(std::move(function));
    begin([queued = std::make_shared<QueuedTurn>(turn)] { queued->run(); });
    turn->wait();
}

void ApplicationDispatcher::_register()
{
    if (isGuiThread())
        return;
    if (_queue->source)
        _queue->stopSource();
    _queue->guiThread = std::this_thread::get_id();
    _queue->open();
    _queue->source = g_unix_fd_source_new(_queue->getDescriptor(), G_IO_IN);
    g_source_set_name(_queue->source, "Kes::ApplicationDispatcher");
    g_source_set_priority(_queue->source, priority);
    // A function may run a dialog's main loop, and what is posted meanwhile has to run in it.
    g_source_set_can_recurse(_queue->source, TRUE);
    const GUnixFDSourceFunc dispatch = [](gint, GIOCondition, gpointer data) -> gboolean {
        static_cast<Queue*>(data)->runSlice();
        return G_SOURCE_CONTINUE;
    };
    g_source_set_callback(_queue->source, G_SOURCE_FUNC(dispatch), _queue.get(), nullptr);
    g_source_attach(_queue->source, nullptr);
    WaitService::install([this] { return _queue->runSlice(); });
}

void ApplicationDispatcher::_unregister()
{
    if (!isGuiThread())
        return;
    WaitService::uninstall();
    _queue->stopSource();
    _queue->close();
    _queue->guiThread = std::thread::id();
}

ApplicationDispatcherPresenter& ApplicationDispatcherPresenter::getInstance()
{
    static ApplicationDispatcherPresenter instance;
    return instance;
}

void ApplicationDispatcherPresenter::registerDispatcher()
{
    ApplicationDispatcher::getInstance()._register();
}

void ApplicationDispatcherPresenter::unregisterDispatcher()
{
    ApplicationDispatcher::getInstance()._unregister();
}

} // namespace Kes
