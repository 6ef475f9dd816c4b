#include <KesCommon/WaitService.h>

#include <KesCommon/ThreadWaits.h>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

namespace Kes {

namespace {

std::atomic<std::thread::id> servingThread;

/// Touched by the serving thread only. Shared, since a served function may take the service down.
/// Never destroyed, as waits happen until the very end of the process.
std::shared_ptr<const WaitService::Serve>& service()
{
    using Service = std::shared_ptr<const WaitService::Serve>;
    static Service& instance = *std::make_unique<Service>().release();
    return instance;
}

/// Never destroyed either.
Bell& bell()
{
    static Bell& instance = *std::make_unique<Bell>().release();
    return instance;
}

} // namespace

void WaitService::install(Serve serve)
{
    service() = std::make_shared<const Serve>(std::move(serve));
    servingThread = std::this_thread::get_id();
}

void WaitService::uninstall()
{
    if (!isServingThread())
        return;
    servingThread = std::thread::id();
    service().reset();
}

bool WaitService::isServingThread()
{
    return servingThread.load() == std::this_thread::get_id();
}

void WaitService::ring()
{
    if (!isServingThread())
        bell().ring();
}

bool WaitService::serve()
{
    if (!isServingThread())
        return false;
    const auto serve = service();
    if (!serve || !*serve)
        return false;
    const ThreadWaits::Serving running;
    return (*serve)();
}

const Bell& WaitService::getBell()
{
    return bell();
}

} // namespace Kes
