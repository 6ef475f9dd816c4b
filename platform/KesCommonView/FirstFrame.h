#pragma once

#include <KesCommon/Export.h>

#include <sigc++/functors/slot.h>

/// What a view can leave until the program's first window is seen, such as reading a picture: the window
/// appears sooner for it. GUI thread.
namespace Kes::FirstFrame {

/// The slots of `call` wait from now on. The one who shows the window says when it has been drawn.
KES_EXPORT void expect();

/// Calls what waits, in its order.
KES_EXPORT void tellDrawn();

/// No first frame is expected any more; what waits is not called.
KES_EXPORT void forget();

/// Calls the slot: at once when no first frame is expected, else when it is told; never after the end of an
/// object that the slot is bound to.
KES_EXPORT void call(const sigc::slot<void()>& slot);

} // namespace Kes::FirstFrame
