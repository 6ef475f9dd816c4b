#include <KesCommon/ThreadWaits.h>

#include <KesCommon/WaitCondition.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace Kes {

/// The declarations of all threads, each thread's in the order in which it has made them. One that awaits
/// no thread hides the earlier ones of its thread.
class ThreadWaits::Registry {
public:
    void add(const WaitingFor& wait)
    {
        std::lock_guard lock(_mutex);
        _waits.push_back(&wait);
    }

    bool addIfAnyOf(std::thread::id waiting, const WaitingFor& wait)
    {
        std::lock_guard lock(_mutex);
        const bool found = !_getAwaited(waiting).empty();
        if (found)
            _waits.push_back(&wait);
        return found;
    }

    void remove(const WaitingFor& wait)
    {
        std::lock_guard lock(_mutex);
        _waits.erase(std::remove(_waits.begin(), _waits.end(), &wait), _waits.end());
    }

    void removeAllFor(std::thread::id awaited)
    {
        std::lock_guard lock(_mutex);
        std::erase_if(_waits, [=](const auto* wait) { return wait->_awaited == awaited; });
    }

    /// Whether the declaration is there afterwards, and whether that is new.
    struct Outcome {
        bool isDeclared;
        bool isNew;
    };
    Outcome trySet(WaitingFor& wait, std::thread::id awaited)
    {
        std::lock_guard lock(_mutex);
        const auto found = std::find(_waits.begin(), _waits.end(), &wait);
        const bool wasDeclared = found != _waits.end();
        if (awaited == wait._waiting || _isWaitingFor(awaited, wait._waiting)) {
            if (wasDeclared)
                _waits.erase(found);
            return {false, false};
        }
        if (!wasDeclared)
            _waits.push_back(&wait);
        const bool isNew = !wasDeclared || wait._awaited != awaited;
        wait._awaited = awaited;
        return {true, isNew};
    }

    bool isWaitingFor(std::thread::id waiting, std::thread::id awaited) const
    {
        std::lock_guard lock(_mutex);
        return _isWaitingFor(waiting, awaited);
    }

    WaitCondition condition;

private:
    using Threads = std::vector<std::thread::id>;

    Threads _getAwaited(std::thread::id waiting) const
    {
        Threads awaited;
        for (const auto* wait : _waits) {
            if (wait->_waiting != waiting)
                continue;
            if (wait->_awaited == std::thread::id())
                awaited.clear();
            else
                awaited.push_back(wait->_awaited);
        }
        return awaited;
    }

    bool _isWaitingFor(std::thread::id waiting, std::thread::id awaited) const
    {
        Threads reached{waiting};
        for (std::size_t i = 0; i < reached.size(); ++i)
            for (const auto next : _getAwaited(reached[i])) {
                if (next == awaited)
                    return true;
                if (std::find(reached.begin(), reached.end(), next) == reached.end())
                    reached.push_back(next);
            }
        return false;
    }

    mutable std::mutex _mutex;
    std::vector<const WaitingFor*> _waits;
};

/// Never destroyed: waits happen until the very end of the process.
ThreadWaits::Registry& ThreadWaits::_registry()
{
    static Registry& instance = *std::make_unique<Registry>().release();
    return instance;
}

bool ThreadWaits::isWaitingFor(std::thread::id waiting, std::thread::id awaited)
{
    return _registry().isWaitingFor(waiting, awaited);
}

void ThreadWaits::endThread()
{
    _registry().removeAllFor(std::this_thread::get_id());
}

WaitCondition& ThreadWaits::getCondition()
{
    return _registry().condition;
}

ThreadWaits::WaitingFor::WaitingFor() : _waiting(std::this_thread::get_id()) {}

ThreadWaits::WaitingFor::WaitingFor(std::thread::id awaited, std::thread::id waiting)
    : _waiting(waiting), _awaited(awaited)
{
    _registry().add(*this);
    getCondition().notifyAll();
}

ThreadWaits::WaitingFor::~WaitingFor()
{
    _registry().remove(*this);
}

bool ThreadWaits::WaitingFor::trySet(std::thread::id awaited)
{
    const auto outcome = _registry().trySet(*this, awaited);
    if (outcome.isNew)
        getCondition().notifyAll();
    return outcome.isDeclared;
}

ThreadWaits::Serving::Serving() : _isNeeded(_registry().addIfAnyOf(std::this_thread::get_id(), _barrier)) {}

ThreadWaits::Serving::~Serving()
{
    if (!_isNeeded)
        return;
    _registry().remove(_barrier);
    getCondition().notifyAll();
}

} // namespace Kes
