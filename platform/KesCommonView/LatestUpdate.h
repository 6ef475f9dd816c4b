#pragma once

#include <KesCommonView/ApplicationDispatcher.h>
#include <KesCommonView/UpdateViewGuard.h>

#include <functional>
#include <mutex>
#include <optional>
#include <utility>

namespace Kes {

/// Brings a value that any thread may report to a view, newest only.
///
/// A member of a presenter, made and destroyed on the GUI thread. A value reported on the GUI thread is
/// applied at once, one reported elsewhere when the GUI thread gets to it; a value that has been overtaken
/// by a newer one is not applied any more, so the last one reported is also the last one shown, and a flood
/// of reports costs one update.
///
/// It is for states, not for events each of which counts, such as messages: those go through
/// `UpdateViewGuard`.
template <typename T>
class LatestUpdate {
public:
    /// `apply` is called on the GUI thread, never after this object has died. It may report a value itself.
    /// What it uses has to outlive this object: declare it before.
    explicit LatestUpdate(std::function<void(const T&)> apply) : _apply(std::move(apply)) {}

    /// Any thread, while the object lives; callers on different threads are ordered by the signal gate.
    void set(T value)
    {
        const bool onGuiThread = ApplicationDispatcher::getInstance().isGuiThread();
        bool waiting = false;
        {
            std::lock_guard lock(_mutex);
            waiting = _value.has_value();
            _value = std::move(value);
        }
        if (onGuiThread)
            _applyValue();
        else if (!waiting)
            _guard.safeBeginUpdateView([this] { _applyValue(); });
    }

private:
    void _applyValue()
    {
        std::optional<T> value;
        {
            std::lock_guard lock(_mutex);
            value.swap(_value);
        }
        if (value)
            _apply(*value);
    }

    std::function<void(const T&)> _apply;
    /// Held for a few assignments only; `apply` runs outside it.
    std::mutex _mutex;
    /// Reported and not yet applied. Where a thread finds one here, an update is under way that will take
    /// its own.
    std::optional<T> _value;
    /// Its end drops an update that is still queued.
    UpdateViewGuard _guard;
};

} // namespace Kes
