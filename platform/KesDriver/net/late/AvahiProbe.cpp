#include <KesDriver/net/late/AvahiProbe.h>

#include <utility>

namespace KesDriver {

AvahiProbe::AvahiProbe(Told told)
    : _told(std::move(told)), _context(g_main_context_ref_thread_default()), _cancellable(g_cancellable_new())
{
    _timer = g_timeout_source_new(static_cast<guint>(timeout.count()));
    g_source_set_callback(_timer, &_onTooLate, this, nullptr);
    g_source_attach(_timer, _context);
    // A connection of its own: the shared one ends the process with the bus.
    char* const address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr);
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    _isPending = true;
    g_dbus_connection_new_for_address(address ? address : "", flags, nullptr, _cancellable, &_onConnected,
                                      this);
    g_free(address);
}

AvahiProbe::~AvahiProbe()
{
    _isGivenUp = true;
    g_cancellable_cancel(_cancellable);
    while (_isPending)
        g_main_context_iteration(_context, TRUE);
    _drop();
    g_object_unref(_cancellable);
    g_main_context_unref(_context);
}

gboolean AvahiProbe::_onTooLate(gpointer self)
{
    g_cancellable_cancel(static_cast<AvahiProbe*>(self)->_cancellable);
    return G_SOURCE_REMOVE;
}

void AvahiProbe::_onConnected(GObject*, GAsyncResult* result, gpointer self)
{
    auto& probe = *static_cast<AvahiProbe*>(self);
    GError* error = nullptr;
    probe._connection = g_dbus_connection_new_for_address_finish(result, &error);
    if (!probe._connection)
        return probe._finish(error);
    g_dbus_connection_call(probe._connection, "org.freedesktop.Avahi", "/", "org.freedesktop.Avahi.Server",
                           "GetVersionString", nullptr, nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                           probe._cancellable, &_onAnswered, self);
}

void AvahiProbe::_onAnswered(GObject* source, GAsyncResult* result, gpointer self)
{
    GError* error = nullptr;
    if (GVariant* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error))
        g_variant_unref(answer);
    static_cast<AvahiProbe*>(self)->_finish(error);
}

void AvahiProbe::_finish(GError* error)
{
    const bool answers = !g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
    g_clear_error(&error);
    _isPending = false;
    _drop();
    if (!_isGivenUp)
        _told(answers);
}

void AvahiProbe::_drop()
{
    if (GSource* const timer = std::exchange(_timer, nullptr)) {
        g_source_destroy(timer);
        g_source_unref(timer);
    }
    if (auto* const connection = std::exchange(_connection, nullptr)) {
        g_dbus_connection_close(connection, nullptr, nullptr, nullptr);
        g_object_unref(connection);
    }
}

} // namespace KesDriver
