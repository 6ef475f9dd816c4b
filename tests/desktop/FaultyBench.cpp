// Linked into a test program, gives its simulated device a fault from outside: on SIGUSR1 an overload of the
// first channel, which the device reports again and again for a while.

#include <KesDriver/EmbeddedNetwork.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

#include <glib-unix.h>

#include <chrono>
#include <csignal>
#include <cstdio>

namespace {

constexpr auto repeatInterval = std::chrono::milliseconds(20);
constexpr guint duration = 2500; // milliseconds

KesDriver::SimulatedKesto& device()
{
    return *KesDriver::SimulatedNetwork::getEmbedded()->get(KesDriver::embeddedAddress);
}

gboolean endFaults(gpointer)
{
    device().clearFaults();
    std::puts("The faults are over.");
    std::fflush(stdout);
    return G_SOURCE_REMOVE;
}

gboolean beginFaults(gpointer)
{
    device().setFaultRepeatInterval(repeatInterval);
    device().simulateOverload(0);
    g_timeout_add(duration, &endFaults, nullptr);
    return G_SOURCE_CONTINUE;
}

const guint source = g_unix_signal_add(SIGUSR1, &beginFaults, nullptr);

} // namespace
