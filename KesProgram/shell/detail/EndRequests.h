#pragma once

#include <glib.h>
#include <gtk/gtk.h>

#include <array>
#include <functional>

namespace KesProgram {

/// Reports when the process is to end: SIGHUP, SIGINT, SIGTERM, or the end of the desktop's session as its
/// session manager announces it. GUI thread.
class EndRequests {
public:
    /// The function is called from the main loop for each request.
    explicit EndRequests(std::function<void()> onRequest);
    ~EndRequests();
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;

private:
    static gboolean _onUnixSignal(gpointer requests);
    static gboolean _onShown(gpointer requests);
    static void _onQueryEnd(GtkApplication* application, gpointer requests);
    void _joinSession();

    const std::function<void()> _onRequest;
    std::array<guint, 3> _signalSources{};
    guint _joining = 0;
    GtkApplication* _session = nullptr;
};

} // namespace KesProgram
