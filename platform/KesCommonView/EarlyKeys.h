#pragma once

#include <KesCommon/Export.h>

#include <gtkmm/window.h>

#include <functional>

namespace Kes {

/// Hears every key of the process before the window that has the keyboard: for a command that no dialog may
/// keep from the user. Other commands belong to the accelerators of their window. A file chooser that the
/// desktop shows in another process keeps its keys. Held by the view of the command. GUI thread.
class KES_EXPORT EarlyKeys {
public:
    /// The window is the one that the key would go to. Only presses are told, not releases. True keeps the
    /// key from the window. The handler may open and close windows, but not destroy this object.
    using Handler = std::function<bool(GtkWindow* window, const GdkEventKey& event)>;

    explicit EarlyKeys(Handler handler);
    ~EarlyKeys();
    EarlyKeys(const EarlyKeys&) = delete;
    EarlyKeys& operator=(const EarlyKeys&) = delete;

private:
    static gint _hear(GtkWidget* widget, GdkEventKey* event, gpointer self);

    Handler _handler;
    /// By which GTK knows the handler.
    unsigned _snooper;
};

} // namespace Kes
