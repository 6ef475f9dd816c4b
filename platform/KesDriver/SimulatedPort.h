#pragma once

#include <KesDriver/IKestoLink.h>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace KesDriver {

/// Where a simulated device meets the listener of one link. Shared by both, so either may go first. Any
/// thread.
class SimulatedPort {
public:
    using Report = std::function<void(IKestoLinkListener&)>;

    /// As `IKestoLink::setListener`.
    void setListener(IKestoLinkListener* listener);

    /// Calls the listener with no lock held; drops the report when there is none. Device thread.
    void deliver(const Report& report);

private:
    std::mutex _mutex;
    std::condition_variable _delivered;
    IKestoLinkListener* _listener = nullptr;
    std::thread::id _deliverer;
};

} // namespace KesDriver
