#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <giomm/cancellable.h>

#include <functional>
#include <string>

namespace Kes {

/// Work of seconds on a thread of its own, for which the user waits. GUI thread.
class KES_EXPORT CancelableWork {
public:
    /// Runs on the thread; must not throw. It should end soon after it has been cancelled.
    using Work = std::function<void(const Glib::RefPtr<Gio::Cancellable>&)>;

    /// Returns when the work has returned. Meanwhile a box over the parent's window shows the text, and
    /// cancels the work when the user closes it. When the system has no thread to give, the work is done
    /// here.
    static void run(IView* parent, const std::string& text, const Work& work);
};

} // namespace Kes
