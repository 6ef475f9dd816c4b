#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <memory>

namespace Kes {

/// Lives as long as its presenter; late calls of a dead presenter are dropped. Any thread.
class LifetimeToken {};

/// Protects a presenter against view updates that arrive after its death.
///
/// A member of the presenter, destroyed with it on the GUI thread. The operations may be called from any
/// thread while the presenter lives; what they have queued does nothing once the guard is gone.
class KES_EXPORT UpdateViewGuard {
public:
    UpdateViewGuard();
    ~UpdateViewGuard();
    UpdateViewGuard(const UpdateViewGuard&) = delete;
    UpdateViewGuard& operator=(const UpdateViewGuard&) = delete;

    /// Queues the function for the GUI thread and returns at once.
    void safeBeginUpdateView(std::function<void()> function) const;

    /// Runs the function on the GUI thread and waits for it; the wait ends as well when the presenter dies.
    void safeWaitUpdateView(std::function<void()> function) const;

    /// On the GUI thread the function runs at once, on any other it is queued: the way in which a slot
    /// of a signal that any thread may emit updates its view.
    void safeUpdateView(std::function<void()> function) const;

private:
    std::function<void()> _guarded(std::function<void()> function) const;

    std::shared_ptr<LifetimeToken> _token;
};

} // namespace Kes
