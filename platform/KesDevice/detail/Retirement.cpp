#include <KesDevice/detail/Retirement.h>

#include <KesCommon/Worker.h>
#include <KesDevice/detail/AddressHold.h>

#include <functional>
#include <list>
#include <mutex>
#include <utility>
#include <vector>

namespace KesDevice::Retirement {

namespace {

struct Workers {
    std::mutex mutex;
    std::list<std::shared_ptr<Kes::Worker>> running;
    bool isFinished = false;
};

/// Never destroyed: configurations end until the very end of the process.
Workers& workers()
{
    static Workers& instance = *std::make_unique<Workers>().release();
    return instance;
}

void run(std::function<void()> work)
{
    auto& all = workers();
    {
        std::lock_guard lock(all.mutex);
        // Those that have ended are destroyed at once.
        all.running.remove_if([](const auto& worker) { return !worker->isRunning(); });
        if (!all.isFinished) {
            if (auto worker = Kes::Worker::tryStart("KesDevice_End", work)) {
                all.running.push_back(std::make_shared<Kes::Worker>(std::move(*worker)));
                return;
            }
        }
    }
    work();
}

} // namespace

std::shared_ptr<HardwareManager> share(std::unique_ptr<HardwareManager> hardware)
{
    if (!hardware)
        return nullptr;
    return {hardware.release(), [](HardwareManager* last) {
                run([last] { const std::unique_ptr<HardwareManager> destroyed(last); });
            }};
}

void begin(std::shared_ptr<HardwareManager> hardware)
{
    if (!hardware)
        return;
    const auto holds = std::make_shared<std::vector<AddressHold>>();
    for (const auto& kesto : hardware->getKestos().lease())
        holds->emplace_back(kesto->getAddress());
    hardware->refuse();
    run([hardware = std::move(hardware), holds] {
        hardware->retire();
        holds->clear();
    });
}

void wait()
{
    const auto running = [] {
        std::lock_guard lock(workers().mutex);
        return workers().running;
    }();
    for (const auto& worker : running)
        worker->wait();
}

void finish()
{
    {
        std::lock_guard lock(workers().mutex);
        workers().isFinished = true;
    }
    wait();
}

} // namespace KesDevice::Retirement
