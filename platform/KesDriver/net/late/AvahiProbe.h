#pragma once

#include <gio/gio.h>

#include <chrono>
#include <functional>

namespace KesDriver {

/// Asks once whether the system's Avahi service answers. Its client library waits 25 s for each answer of a
/// service, or of a bus, that hangs, so nobody calls it before. Belongs to one thread, whose default main
/// context it works in.
class AvahiProbe {
public:
    static constexpr std::chrono::milliseconds timeout{2000};

    /// Told once, from the main context: false when nobody has answered in time. A service that is not there
    /// counts as an answer.
    using Told = std::function<void(bool answers)>;

    /// Begins to ask and returns; connecting to the bus counts as part of the time.
    explicit AvahiProbe(Told told);
    /// Gives up; nothing is reported any more. Iterates the main context until the call that is under way
    /// has ended.
    ~AvahiProbe();
    AvahiProbe(const AvahiProbe&) = delete;
    AvahiProbe& operator=(const AvahiProbe&) = delete;

private:
    static void _onConnected(GObject* source, GAsyncResult* result, gpointer self);
    static void _onAnswered(GObject* source, GAsyncResult* result, gpointer self);
    static gboolean _onTooLate(gpointer self);

    /// The end of the call, for whatever reason; takes the error, null for an answer.
    void _finish(GError* error);
    void _drop();

    const Told _told;
    GMainContext* const _context;
    GCancellable* const _cancellable;
    GDBusConnection* _connection = nullptr;
    GSource* _timer = nullptr;
    /// A call is under way, and uses this until it has come to its end.
    bool _isPending = false;
    bool _isGivenUp = false;
};

} // namespace KesDriver
