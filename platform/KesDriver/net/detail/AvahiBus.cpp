#include <KesDriver/net/detail/AvahiBus.h>

#include <memory>
#include <utility>

namespace KesDriver {

namespace {

constexpr const char* serviceName = "org.freedesktop.Avahi";
constexpr const char* busName = "org.freedesktop.DBus";

struct FreeError {
    void operator()(GError* error) const { g_error_free(error); }
};
using Error = std::unique_ptr<GError, FreeError>;

} // namespace

struct AvahiBus::Call {
    AvahiBus& bus;
    Answered answered;
    Failed failed;
};

AvahiBus::AvahiBus() : _context(g_main_context_ref_thread_default()), _cancellable(g_cancellable_new()) {}

AvahiBus::~AvahiBus()
{
    _isEnding = true;
    _stopTimer();
    g_cancellable_cancel(_cancellable);
    // An operation that is cancelled still comes to its end, and uses this until then.
    while (_pending > 0)
        g_main_context_iteration(_context, TRUE);
    if (_connection) {
        g_signal_handlers_disconnect_by_data(_connection, this);
        for (const auto subscription : _subscriptions)
            g_dbus_connection_signal_unsubscribe(_connection, subscription);
        g_dbus_connection_close(_connection, nullptr, nullptr, nullptr);
        g_object_unref(_connection);
    }
    g_object_unref(_cancellable);
    g_main_context_unref(_context);
}

void AvahiBus::open(std::function<void()> opened, Heard heard, Failed lost)
{
    _opened = std::move(opened);
    _heard = std::move(heard);
    _lost = std::move(lost);
    GError* error = nullptr;
    char* address = g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, &error);
    if (!address) {
        const Error owned(error);
        _lost(*owned);
        return;
    }
    const auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                         G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    ++_pending;
    g_dbus_connection_new_for_address(address, flags, nullptr, _cancellable, &_onOpened, this);
    g_free(address);
    _timer = g_timeout_source_new(static_cast<guint>(timeout.count()));
    g_source_set_callback(_timer, &_onTooLate, this, nullptr);
    g_source_attach(_timer, _context);
}

gboolean AvahiBus::_onTooLate(gpointer self)
{
    g_cancellable_cancel(static_cast<AvahiBus*>(self)->_cancellable);
    return G_SOURCE_REMOVE;
}

void AvahiBus::_stopTimer()
{
    if (GSource* const timer = std::exchange(_timer, nullptr)) {
        g_source_destroy(timer);
        g_source_unref(timer);
    }
}

void AvahiBus::_onOpened(GObject*, GAsyncResult* result, gpointer self)
{
    auto& bus = *static_cast<AvahiBus*>(self);
    GError* error = nullptr;
    auto* const connection = g_dbus_connection_new_for_address_finish(result, &error);
    const Error owned(error);
    --bus._pending;
    bus._connection = connection;
    if (bus._isEnding)
        return;
    bus._stopTimer();
    if (!connection) {
        if (g_error_matches(owned.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED))
            bus._lose(G_DBUS_ERROR_TIMED_OUT, "The bus does not answer");
        else
            bus._lost(*owned);
        return;
    }
    bus._use(connection);
    bus._opened();
}

void AvahiBus::_use(GDBusConnection* connection)
{
    g_signal_connect(connection, "closed", G_CALLBACK(&_onClosed), this);
    _subscriptions = {g_dbus_connection_signal_subscribe(connection, serviceName, nullptr, nullptr, nullptr,
                                                         nullptr, G_DBUS_SIGNAL_FLAGS_NONE, &_onSignal, this,
                                                         nullptr),
                      g_dbus_connection_signal_subscribe(connection, busName, busName, "NameOwnerChanged",
                                                         nullptr, serviceName, G_DBUS_SIGNAL_FLAGS_NONE,
                                                         &_onOwnerChanged, this, nullptr)};
}

void AvahiBus::call(const std::string& path, const char* interface, const char* method, GVariant* parameters,
                    Answered answered, Failed failed)
{
    auto call = std::make_unique<Call>(Call{*this, std::move(answered), std::move(failed)});
    ++_pending;
    g_dbus_connection_call(_connection, serviceName, path.c_str(), interface, method, parameters, nullptr,
                           G_DBUS_CALL_FLAGS_NONE, static_cast<int>(timeout.count()), _cancellable,
                           &_onAnswered, call.release());
}

void AvahiBus::_onAnswered(GObject* source, GAsyncResult* result, gpointer call)
{
    const std::unique_ptr<Call> owned(static_cast<Call*>(call));
    GError* error = nullptr;
    auto* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error);
    const Error failure(error);
    --owned->bus._pending;
    if (!owned->bus._isEnding && answer)
        owned->answered(answer);
    else if (!owned->bus._isEnding)
        owned->failed(*failure);
    if (answer)
        g_variant_unref(answer);
}

void AvahiBus::_onSignal(GDBusConnection*, const char*, const char* path, const char*, const char* signal,
                         GVariant* content, gpointer self)
{
    auto& bus = *static_cast<AvahiBus*>(self);
    if (!bus._isEnding)
        bus._heard(path, signal, content);
}

void AvahiBus::_onOwnerChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                               GVariant* content, gpointer self)
{
    const char* owner = nullptr;
    if (!g_variant_is_of_type(content, G_VARIANT_TYPE("(sss)")))
        return;
    g_variant_get_child(content, 2, "&s", &owner);
    if (*owner == '\0')
        static_cast<AvahiBus*>(self)->_lose(G_DBUS_ERROR_NAME_HAS_NO_OWNER, "The service has ended");
}

void AvahiBus::_onClosed(GDBusConnection*, gboolean, GError*, gpointer self)
{
    static_cast<AvahiBus*>(self)->_lose(G_DBUS_ERROR_DISCONNECTED, "The bus has ended the connection");
}

void AvahiBus::_lose(int code, const char* text)
{
    const Error error(g_error_new_literal(G_DBUS_ERROR, code, text));
    if (!_isEnding)
        _lost(*error);
}

} // namespace KesDriver
