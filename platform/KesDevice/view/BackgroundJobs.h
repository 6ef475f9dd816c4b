#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Worker.h>
#include <KesCommonView/UpdateViewGuard.h>

#include <functional>
#include <list>
#include <memory>
#include <string>

namespace KesDevice {

/// Work that would freeze the window, each piece on a thread of its own. GUI thread.
class KES_EXPORT BackgroundJobs {
public:
    /// Run on the GUI thread when the work is done.
    using Completion = std::function<void()>;
    /// Run on the job's thread; must not throw.
    using Work = std::function<Completion()>;

    BackgroundJobs();
    /// Waits for the threads; what they have completed is dropped.
    ~BackgroundJobs();

    /// Runs the work, and then its completion unless the owner has died meanwhile. The owner keeps the token
    /// and dies on the GUI thread. False, and neither is run, when the system has no thread to give.
    [[nodiscard]] bool run(const std::string& threadName, std::weak_ptr<Kes::LifetimeToken> owner, Work work);

    /// From inside the work: queues the function for the GUI thread, where it is run unless the owner has
    /// died meanwhile. It comes before the work's completion.
    void report(std::weak_ptr<Kes::LifetimeToken> owner, std::function<void()> function) const;

    /// How many jobs are not completed yet.
    std::size_t size() const { return _workers.size(); }

private:
    std::list<Kes::Worker> _workers;
    std::unique_ptr<Kes::UpdateViewGuard> _guard;
};

} // namespace KesDevice
