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
/// A member of a presenter. A value reported on the GUI thread is applied at once, one reported elsewhere
/// when the GUI thread gets to it; a value that has been overtaken by a newer one is not applied any more, so
/// the last one reported is also the last one shown, and a flood of reports costs one update.
template <typename T>
class LatestUpdate {
public:
    /// `apply` is called on the GUI thread, never after this object has died.
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
    std::mutex _mutex;
    std::optional<T> _value;
    UpdateViewGuard _guard;
};

} // namespace Kes
