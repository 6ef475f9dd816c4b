#include <KesCommonView/MainLoopWatch.h>

#include <KesCommon/Worker.h>

#include <glib.h>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace Kes {

using namespace std::chrono;

namespace {

/// How often the main loop shows that it turns, within the longest standstill.
constexpr int turnsWithin = 3;

} // namespace

/// Shared with the source in the main loop, which may come once more after the end of the watch.
class MainLoopWatch::State : public std::enable_shared_from_this<State> {
public:
    State(milliseconds longest, std::function<void()> onStandstill)
        : _longest(longest), _onStandstill(std::move(onStandstill))
    {}

    void watch(bool isOn)
    {
        std::lock_guard lock(_mutex);
        if (isOn == _isOn || _isEnding)
            return;
        _isOn = isOn;
        _lastTurn = steady_clock::now();
        _isTold = false;
        if (isOn && !_thread)
            _thread = Worker::tryStart("Kes_LoopWatch", [this] { _run(); });
        if (isOn && !std::exchange(_hasSource, true))
            _addSource();
        _changed.notify_all();
    }

    void end()
    {
        {
            std::lock_guard lock(_mutex);
            _isOn = false;
            _isEnding = true;
        }
        _changed.notify_all();
        _thread.reset();
    }

private:
    void _addSource()
    {
        // Before everything else that the main loop has to do: a busy loop turns as well.
        g_timeout_add_full(
            G_PRIORITY_HIGH, static_cast<guint>(_longest.count() / turnsWithin),
            [](gpointer state) -> gboolean {
                return (*static_cast<std::shared_ptr<State>*>(state))->_turn();
            },
            new std::shared_ptr<State>(shared_from_this()),
            [](gpointer state) { delete static_cast<std::shared_ptr<State>*>(state); });
    }

    bool _turn()
    {
        std::lock_guard lock(_mutex);
        _hasSource = _isOn;
        if (!_isOn)
            return false;
        // The thread may have stood still as well, with the whole process.
        _note();
        _lastTurn = steady_clock::now();
        if (!_isDue && std::exchange(_isTold, false))
            _changed.notify_all();
        return true;
    }

    void _note()
    {
        if (!_isOn || _isTold || steady_clock::now() - _lastTurn <= _longest)
            return;
        _isTold = true;
        _isDue = true;
        _changed.notify_all();
    }

    void _run()
    {
        std::unique_lock lock(_mutex);
        while (!_isEnding) {
            _note();
            if (std::exchange(_isDue, false)) {
                lock.unlock();
                _onStandstill();
                lock.lock();
            } else if (_isOn && !_isTold) {
                _changed.wait_until(lock, _lastTurn + _longest + milliseconds(1));
            } else {
                _changed.wait(lock);
            }
        }
    }

    const milliseconds _longest;
    const std::function<void()> _onStandstill;
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _isOn = false;
    bool _isEnding = false;
    bool _hasSource = false;
    steady_clock::time_point _lastTurn;
    /// About the standstill that lasts.
    bool _isTold = false;
    /// To be reported.
    bool _isDue = false;
    std::optional<Worker> _thread;
};

MainLoopWatch::MainLoopWatch(milliseconds longest, std::function<void()> onStandstill)
    : _state(std::make_shared<State>(longest, std::move(onStandstill)))
{}

MainLoopWatch::~MainLoopWatch()
{
    _state->end();
}

void MainLoopWatch::watch(bool isOn)
{
    _state->watch(isOn);
}

} // namespace Kes
