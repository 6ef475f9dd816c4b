// Linked into a test program, gives its simulated devices a fault from outside: on SIGUSR1 an overload of the
// first channel, which the devices report again and again for a while.

#include <KesDriver/simulated/SimulatedNetwork.h>

#include <glib-unix.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>

namespace {

constexpr auto repeatInterval = std::chrono::milliseconds(20);
constexpr guint duration = 2500; // milliseconds

void forEachDevice(const std::function<void(KesDriver::SimulatedKesto&)>& action)
{
    const auto network = KesDriver::SimulatedNetwork::getEmbedded();
    (void)network->find(
        [&](const KesDriver::FoundDevice& found) {
            if (const auto device = network->get(found.address))
                action(*device);
        },
        {});
}

gboolean endFaults(gpointer)
{
    forEachDevice([](auto& device) { device.clearFaults(); });
    std::puts("The faults are over.");
    std::fflush(stdout);
    return G_SOURCE_REMOVE;
}

gboolean beginFaults(gpointer)
{
    forEachDevice([](auto& device) {
        device.setFaultRepeatInterval(repeatInterval);
        device.simulateOverload(0);
    });
    g_timeout_add(duration, &endFaults, nullptr);
    return G_SOURCE_CONTINUE;
}

const guint source = g_unix_signal_add(SIGUSR1, &beginFaults, nullptr);

} // namespace
