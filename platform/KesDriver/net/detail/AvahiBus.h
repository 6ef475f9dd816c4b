#pragma once

#include <gio/gio.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace KesDriver {

/// A connection of its own to the system's Avahi service, over D-Bus. Nothing here waits: a service or a bus
/// that hangs keeps nobody from ending. What the service has made for it, browsers and entry groups, goes
/// with it. Belongs to one thread, whose default main context it works in.
class AvahiBus {
public:
    /// Of a call: its answer, which lives during the call of the function only.
    using Answered = std::function<void(GVariant* answer)>;
    /// Of a call, which then has had no effect that is known of, or of the connection.
    using Failed = std::function<void(const GError& error)>;
    /// A signal of the service's objects.
    using Heard = std::function<void(const std::string& path, const std::string& signal, GVariant* content)>;

    static constexpr std::chrono::milliseconds timeout{2000};

    /// The root object, and its interface, from which come the others.
    static constexpr const char* serverPath = "/";
    static constexpr const char* serverInterface = "org.freedesktop.Avahi.Server";

    AvahiBus();
    ~AvahiBus();
    AvahiBus(const AvahiBus&) = delete;
    AvahiBus& operator=(const AvahiBus&) = delete;

    /// Once. Until `opened` nothing else may be asked for; `lost` is told when there is no connection, or no
    /// service any more, once or several times.
    void open(std::function<void()> opened, Heard heard, Failed lost);

    /// Takes a floating answerless tuple of parameters, or none. Exactly one of the functions is called,
    /// unless the connection goes before.
    void call(const std::string& path, const char* interface, const char* method, GVariant* parameters,
              Answered answered, Failed failed);

private:
    struct Call;
    static void _onOpened(GObject* source, GAsyncResult* result, gpointer self);
    static void _onAnswered(GObject* source, GAsyncResult* result, gpointer call);
    static void _onSignal(GDBusConnection* connection, const char* sender, const char* path,
                          const char* interface, const char* signal, GVariant* content, gpointer self);
    static void _onOwnerChanged(GDBusConnection* connection, const char* sender, const char* path,
                                const char* interface, const char* signal, GVariant* content, gpointer self);
    static void _onClosed(GDBusConnection* connection, gboolean remotePeerVanished, GError* error,
                          gpointer self);
    static gboolean _onTooLate(gpointer self);

    void _use(GDBusConnection* connection);
    void _stopTimer();
    void _lose(int code, const char* text);

    GMainContext* const _context;
    GCancellable* const _cancellable;
    GDBusConnection* _connection = nullptr;
    std::vector<guint> _subscriptions;
    GSource* _timer = nullptr;
    /// Operations whose end is still to come.
    unsigned _pending = 0;
    bool _isEnding = false;
    std::function<void()> _opened;
    Heard _heard;
    Failed _lost;
};

} // namespace KesDriver
