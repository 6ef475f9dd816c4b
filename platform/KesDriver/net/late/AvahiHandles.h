#pragma once

#include <avahi-client/client.h>
#include <avahi-glib/glib-watch.h>
#include <glib.h>

#include <memory>

namespace KesDriver {

/// Frees what the Avahi client library has made. On the thread whose main context it works in.
struct AvahiFree {
    void operator()(AvahiGLibPoll* poll) const { avahi_glib_poll_free(poll); }
    void operator()(AvahiClient* client) const { avahi_client_free(client); }
};

/// What waits for the library in a main context. It outlives the clients that were made with it: declare it
/// before them.
using AvahiPollHandle = std::unique_ptr<AvahiGLibPoll, AvahiFree>;
/// Frees with it what was made for it: browsers, resolvers, entry groups.
using AvahiClientHandle = std::unique_ptr<AvahiClient, AvahiFree>;

/// Works in the default main context of the calling thread, which has to be iterated for anything to
/// happen.
inline AvahiPollHandle makeAvahiPoll()
{
    return AvahiPollHandle(avahi_glib_poll_new(g_main_context_get_thread_default(), G_PRIORITY_DEFAULT));
}

} // namespace KesDriver
