#pragma once

#include <KesCommon/Export.h>

#include <functional>
#include <memory>
#include <string>

namespace Kes {

/// What `Signal` does with exceptions of its slots. Any thread.
class KES_EXPORT SignalFaults {
public:
    using Handler = std::function<void(const std::string& text)>;

    /// Inside a catch block: gives the text of the exception to the handler, or to the log when there is
    /// none, when it throws itself, or when it is already running on this thread: what a handler emits may
    /// lead to the fault that it handles.
    static void handleCurrent(const std::shared_ptr<const Handler>& handler);
};

} // namespace Kes
