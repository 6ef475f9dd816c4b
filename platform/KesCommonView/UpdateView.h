#pragma once

#include <KesCommon/Export.h>

#include <functional>

namespace Kes {

/// Any thread. Queues the function for the GUI thread and returns at once.
KES_EXPORT void beginUpdateView(std::function<void()> function);

/// Any thread. Runs the function on the GUI thread and waits for it; at once when called there.
KES_EXPORT void waitUpdateView(std::function<void()> function);

} // namespace Kes
