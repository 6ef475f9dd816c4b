#include <KesDevice/KestoStateGlobalUpdater.h>

#include <KesCommon/ThreadHelper.h>
#include <KesDevice/HardwareControl.h>
#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDriver/ServingWait.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace KesDevice {

struct KestoStateGlobalUpdater::Impl {
    using Kestos = std::vector<std::shared_ptr<Kesto>>;

    explicit Impl(std::function<Kestos()> lease) : leaseKestos(std::move(lease)) {}

    const std::function<Kestos()> leaseKestos;
    std::mutex mutex;
    std::condition_variable changed;
    std::chrono::milliseconds interval{1000};
    unsigned intervalChanges = 0;
    bool isUpdating = false;
    bool isStopping = false;
    bool isAsking = false;
    std::thread thread;

    bool isWanted()
    {
        std::lock_guard lock(mutex);
        return isUpdating && !isStopping && !HardwareIsRunningComponent::getInstance().isRunning();
    }

    void askAll()
    {
        for (const auto& kesto : leaseKestos())
            if (isWanted())
                (void)kesto->updateState();
    }

    void run()
    {
        Kes::ThreadHelper::setCurrentThreadName("KesDevice_State");
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [this] { return isUpdating || isStopping; });
            if (isStopping)
                return;
            isAsking = true;
            lock.unlock();
            askAll();
            lock.lock();
            isAsking = false;
            changed.notify_all();
            const auto changes = intervalChanges;
            changed.wait_for(lock, interval,
                             [&] { return isStopping || !isUpdating || intervalChanges != changes; });
        }
    }

    void stop()
    {
        {
            std::lock_guard lock(mutex);
            isStopping = true;
            changed.notify_all();
        }
        Kes::ThreadHelper::join(thread);
    }
};

KestoStateGlobalUpdater& KestoStateGlobalUpdater::getInstance()
{
    // The configurations are made first, so that they outlive the thread that asks their devices.
    HardwareControl::getInstance();
    static KestoStateGlobalUpdater instance;
    return instance;
}

KestoStateGlobalUpdater::KestoStateGlobalUpdater()
    : _impl(std::make_unique<Impl>([] { return HardwareControl::_leaseKestos(); }))
{}

KestoStateGlobalUpdater::~KestoStateGlobalUpdater()
{
    _impl->stop();
}

bool KestoStateGlobalUpdater::isUpdating() const
{
    std::lock_guard lock(_impl->mutex);
    return _impl->isUpdating;
}

void KestoStateGlobalUpdater::setUpdating(bool updating)
{
    {
        Kes::SignalGate::Guard gate;
        if (isUpdating() != updating) {
            {
                std::lock_guard lock(_impl->mutex);
                _impl->isUpdating = updating;
                if (updating && !_impl->thread.joinable())
                    _impl->thread = std::thread([this] { _impl->run(); });
                _impl->changed.notify_all();
            }
            signalUpdatingChanged.emit(updating);
        }
    }
    std::unique_lock lock(_impl->mutex);
    if (!updating && _impl->thread.get_id() != std::this_thread::get_id())
        KesDriver::servingWait(lock, _impl->changed,
                               [this] { return !_impl->isAsking || _impl->isUpdating; });
}

void KestoStateGlobalUpdater::setInterval(std::chrono::milliseconds interval)
{
    std::lock_guard lock(_impl->mutex);
    _impl->interval = interval;
    ++_impl->intervalChanges;
    _impl->changed.notify_all();
}

} // namespace KesDevice
