#pragma once

#include <KesCommon/Export.h>

#include <functional>

namespace Kes {

/// What is still to be done when the connection to the display breaks: GTK then ends the process.
class KES_EXPORT DisplayLoss {
public:
    /// Runs the function once before that end, on the GUI thread, inside the display's library: it must not
    /// touch GTK and may end the process itself. Called when GTK has been initialised; null: nothing is to be
    /// done. Displays are X servers and Wayland compositors; without one it is never run. GUI thread.
    static void setHandler(std::function<void()> handler);
};

} // namespace Kes
