#pragma once

#include <KesCommon/Export.h>

#include <sigc++/sigc++.h>

namespace KesView {

/// The size of texts and of everything measured in them, for the whole screen. GUI thread.
class KES_EXPORT StyleZoomHelper {
public:
    /// One step of 10 %, up to 200 %.
    static void zoomIn();
    /// One step of 10 %, down to 50 %.
    static void zoomOut();
    /// Back to 100 %.
    static void zoomDefault();
    /// In percent, as asked for; the screen follows from the main loop.
    static int getZoom();
    /// The screen has followed.
    static sigc::signal<void()>& signalZoomed();
};

} // namespace KesView
