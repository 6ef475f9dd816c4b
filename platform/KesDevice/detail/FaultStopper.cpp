#include <KesDevice/detail/FaultStopper.h>

#include <utility>

namespace KesDevice {

void FaultStopper::add(const std::shared_ptr<Kesto>& kesto)
{
    std::lock_guard lock(_mutex);
    _devices[kesto.get()] = {kesto, nullptr};
}

void FaultStopper::remove(const Kesto& kesto)
{
    std::lock_guard lock(_mutex);
    std::erase_if(_leaving, [](const auto& worker) { return !worker->isRunning(); });
    if (const auto device = _devices.extract(&kesto); device && device.mapped().stopping)
        _leaving.push_back(device.mapped().stopping);
}

void FaultStopper::stopOthers(const Kesto& failed)
{
    if (!_isEnabled)
        return;
    // What is replaced has ended, and goes outside the lock.
    std::vector<std::shared_ptr<Kes::Worker>> ended;
    std::vector<std::shared_ptr<Kesto>> untold;
    {
        std::lock_guard lock(_mutex);
        for (auto& [key, device] : _devices) {
            const auto kesto = key == &failed ? nullptr : device.kesto.lock();
            if (!kesto || kesto->getState() != DeviceState::Working ||
                (device.stopping && device.stopping->isRunning()))
                continue;
            ended.push_back(std::move(device.stopping));
            const auto stop = [kesto] { (void)kesto->stopOutputs(); };
            if (auto worker = Kes::Worker::tryStart("KesDevice_Stop", stop))
                device.stopping = std::make_shared<Kes::Worker>(std::move(*worker));
            else
                untold.push_back(kesto);
        }
    }
    // Without a thread for it, here.
    for (const auto& kesto : untold)
        (void)kesto->stopOutputs();
}

void FaultStopper::wait()
{
    std::vector<std::shared_ptr<Kes::Worker>> workers;
    {
        std::lock_guard lock(_mutex);
        workers.swap(_leaving);
        for (const auto& [key, device] : _devices)
            if (device.stopping)
                workers.push_back(device.stopping);
    }
    for (const auto& worker : workers)
        worker->wait();
}

} // namespace KesDevice
