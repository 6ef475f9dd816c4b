#pragma once

#include <KesCommon/Export.h>

#include <sigc++/functors/slot.h>

/// What a view can leave until the program's first window is seen, such as reading a picture: the window
/// appears sooner for it. GUI thread.
namespace Kes::FirstFrame {

/// The slots of `call` wait from now on; `tellDrawn` ends the wait.
KES_EXPORT void expect();

/// The window has been drawn: calls what waits, in its order.
KES_EXPORT void tellDrawn();

/// No first frame is expected any more; what waits is not called.
KES_EXPORT void forget();

/// Calls the slot: at once when no first frame is expected, else at `tellDrawn`; never after the death of an
/// object that the slot is bound to.
KES_EXPORT void call(const sigc::slot<void()>& slot);

} // namespace Kes::FirstFrame
