#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesMeasure {

/// How a window appears quickly: it is shown at its size with little in it, and filled when the user already
/// sees it. Both functions do nothing for a view that is not a window. GUI thread.
class KES_EXPORT WindowOpening {
public:
    /// The size (in units of the font's size) that the window has unless another one is set later; no more
    /// than fits on the monitor.
    static void setDefaultSize(Kes::IView& view, double width, double height);

    /// As Kes::Window says of it.
    static void afterFirstFrame(Kes::IView& view, const sigc::slot<void()>& slot);
};

} // namespace KesMeasure
