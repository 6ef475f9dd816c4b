#include <KesCommon/WaitService.h>

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

namespace Kes {

namespace {

std::atomic<std::thread::id> servingThread;

/// Touched by the serving thread only. Shared, since a served function may take the service down.
/// Never destroyed, as waits happen until the very end of the process.
std::shared_ptr<const std::function<void()>>& service()
{
    using Service = std::shared_ptr<const std::function<void()>>;
    static Service& instance = *std::make_unique<Service>().release();
    return instance;
}

} // namespace

void WaitService::install(std::function<void()> serve)
{
    service() = std::make_shared<const std::function<void()>>(std::move(serve));
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

void WaitService::serve()
{
    if (!isServingThread())
        return;
    if (const auto serve = service(); serve && *serve)
        (*serve)();
}

} // namespace Kes
