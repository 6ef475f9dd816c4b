#include <KesDevice/KestoStateGlobalUpdater.h>

#include <KesCommon/WaitCondition.h>
#include <KesCommon/Worker.h>
#include <KesDevice/HardwareControl.h>
#include <KesDevice/HardwareIsRunningComponent.h>

#include <mutex>
#include <thread>
#include <utility>

namespace KesDevice {

struct KestoStateGlobalUpdater::Fields {
    std::mutex mutex;
    Kes::WaitCondition changed;
    std::chrono::milliseconds interval{1000};
    unsigned intervalChanges = 0;
    bool isUpdating = false;
    bool isStopping = false;
    /// The thread that is just asking; none between the rounds.
    std::thread::id asking;
    /// Last, as it uses all the others until its end.
    Kes::Worker worker;
};

KestoStateGlobalUpdater& KestoStateGlobalUpdater::getInstance()
{
    // The configurations are made first, so that they outlive the thread that asks their devices.
    HardwareControl::getInstance();
    static KestoStateGlobalUpdater instance;
    return instance;
}

KestoStateGlobalUpdater::KestoStateGlobalUpdater() : _fields(std::make_unique<Fields>()) {}

KestoStateGlobalUpdater::~KestoStateGlobalUpdater()
{
    std::lock_guard lock(_fields->mutex);
    _fields->isStopping = true;
    _fields->changed.notifyAll();
}

bool KestoStateGlobalUpdater::isUpdating() const
{
    std::lock_guard lock(_fields->mutex);
    return _fields->isUpdating;
}

void KestoStateGlobalUpdater::setUpdating(bool updating)
{
    {
        Kes::SignalGate::Guard gate;
        if (isUpdating() != updating) {
            {
                std::lock_guard lock(_fields->mutex);
                if (updating && !_startThread())
                    return;
                _fields->isUpdating = updating;
                _fields->changed.notifyAll();
            }
            signalUpdatingChanged.emit(updating);
        }
    }
    if (updating)
        return;
    std::unique_lock lock(_fields->mutex);
    _fields->changed.wait(lock, [this] {
        return _fields->isUpdating || _fields->asking == std::thread::id() ||
               _fields->asking == std::this_thread::get_id();
    });
}

/// With the lock. True also when it goes already.
bool KestoStateGlobalUpdater::_startThread()
{
    if (_fields->worker.isRunning())
        return true;
    auto worker = Kes::Worker::tryStart("KesDevice_State", [this] { _run(); });
    if (worker)
        _fields->worker = std::move(*worker);
    return worker.has_value();
}

void KestoStateGlobalUpdater::setInterval(std::chrono::milliseconds interval)
{
    std::lock_guard lock(_fields->mutex);
    _fields->interval = interval;
    ++_fields->intervalChanges;
    _fields->changed.notifyAll();
}

void KestoStateGlobalUpdater::_run()
{
    std::unique_lock lock(_fields->mutex);
    while (true) {
        _fields->changed.wait(lock, [this] { return _fields->isUpdating || _fields->isStopping; });
        if (_fields->isStopping)
            return;
        _fields->asking = std::this_thread::get_id();
        lock.unlock();
        _askAll();
        lock.lock();
        _fields->asking = std::thread::id();
        _fields->changed.notifyAll();
        const auto changes = _fields->intervalChanges;
        _fields->changed.waitFor(lock, _fields->interval, [&] {
            return _fields->isStopping || !_fields->isUpdating || _fields->intervalChanges != changes;
        });
    }
}

/// An operation of the configuration asks its devices by itself.
void KestoStateGlobalUpdater::_askAll()
{
    const auto hardware = HardwareControl::share();
    for (const auto& kesto : hardware->getKestos().lease())
        if (_isWanted() && !hardware->isBusy())
            (void)kesto->updateState();
}

bool KestoStateGlobalUpdater::_isWanted() const
{
    std::lock_guard lock(_fields->mutex);
    return _fields->isUpdating && !_fields->isStopping &&
           !HardwareIsRunningComponent::getInstance().isRunning();
}

} // namespace KesDevice
