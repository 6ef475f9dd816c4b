#pragma once

#include <KesCommon/Export.h>

/// The actions of buttons and menu items, as assistive technology performs them. GUI thread.
namespace Kes::AccessibleActions {

/// From now on such an action comes from the main loop, after its caller has been answered.
///
/// By itself GTK performs it while the accessibility bus is being served. A command that opens a modal dialog
/// would then block the bus for as long as the dialog is open, so that a screen reader could neither read the
/// dialog nor answer it. An item of a menu that is not open can be activated as well. Safe to call again; GTK
/// must be initialised.
KES_EXPORT void comeFromMainLoop();

} // namespace Kes::AccessibleActions
