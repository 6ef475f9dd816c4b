#pragma once

#include <avahi-client/client.h>
#include <avahi-glib/glib-watch.h>
#include <glib.h>

#include <memory>

namespace KesDriver {

struct AvahiFree {
    void operator()(AvahiGLibPoll* poll) const { avahi_glib_poll_free(poll); }
    void operator()(AvahiClient* client) const { avahi_client_free(client); }
};

using AvahiPollHandle = std::unique_ptr<AvahiGLibPoll, AvahiFree>;
/// Frees with it what was made for it: browsers, resolvers, entry groups.
using AvahiClientHandle = std::unique_ptr<AvahiClient, AvahiFree>;

/// Works in the thread's default main context.
inline AvahiPollHandle makeAvahiPoll()
{
    return AvahiPollHandle(avahi_glib_poll_new(g_main_context_get_thread_default(), G_PRIORITY_DEFAULT));
}

} // namespace KesDriver
