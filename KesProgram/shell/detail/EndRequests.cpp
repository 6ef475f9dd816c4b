#include <KesProgram/shell/detail/EndRequests.h>

#include <glib-unix.h>
#include <glibmm/exceptionhandler.h>

#include <csignal>

namespace KesProgram {

namespace {

constexpr std::array<int, 3> endSignals{SIGHUP, SIGINT, SIGTERM};
/// In milliseconds.
constexpr guint delayOfJoining = 500;

} // namespace

EndRequests::EndRequests(std::function<void()> onRequest) : _onRequest(std::move(onRequest))
{
    for (std::size_t i = 0; i < endSignals.size(); ++i)
        _signalSources[i] = g_unix_signal_add(endSignals[i], &EndRequests::_onUnixSignal, this);
    // It takes some milliseconds, which the first frame does not wait for.
    _joining = g_timeout_add(delayOfJoining, &EndRequests::_onShown, this);
}

EndRequests::~EndRequests()
{
    for (const auto source : _signalSources)
        g_source_remove(source);
    if (_joining)
        g_source_remove(_joining);
    if (!_session)
        return;
    g_signal_handlers_disconnect_by_data(_session, this);
    g_object_unref(_session);
}

gboolean EndRequests::_onUnixSignal(gpointer requests)
{
    try {
        static_cast<EndRequests*>(requests)->_onRequest();
    } catch (...) {
        Glib::exception_handlers_invoke();
    }
    return G_SOURCE_CONTINUE;
}

gboolean EndRequests::_onShown(gpointer requests)
{
    auto& self = *static_cast<EndRequests*>(requests);
    self._joining = 0;
    self._joinSession();
    return G_SOURCE_REMOVE;
}

/// Used for nothing but the session: GTK knows how to speak to the session managers of the desktops.
void EndRequests::_joinSession()
{
    _session = gtk_application_new("kes.Program", G_APPLICATION_NON_UNIQUE);
    g_object_set(_session, "register-session", TRUE, nullptr);
    g_signal_connect(_session, "query-end", G_CALLBACK(&EndRequests::_onQueryEnd), this);
    // Without a session no end of it will be reported.
    g_application_register(G_APPLICATION(_session), nullptr, nullptr);
}

void EndRequests::_onQueryEnd(GtkApplication*, gpointer requests)
{
    _onUnixSignal(requests);
}

} // namespace KesProgram
