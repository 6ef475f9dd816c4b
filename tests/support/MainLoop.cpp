#include "MainLoop.h"

#include <glibmm/main.h>

namespace KesTest {

bool waitFor(const std::function<bool()>& predicate, std::chrono::milliseconds limit)
{
    const auto context = Glib::MainContext::get_default();
    const auto end = std::chrono::steady_clock::now() + limit;
    // Wakes the loop so that a predicate about something outside of it is asked again.
    auto tick = Glib::signal_timeout().connect([] { return true; }, 5, Glib::PRIORITY_HIGH);
    bool holds = predicate();
    while (!holds && std::chrono::steady_clock::now() < end) {
        context->iteration(true);
        holds = predicate();
    }
    tick.disconnect();
    return holds;
}

void runPendingEvents()
{
    const auto context = Glib::MainContext::get_default();
    while (context->iteration(false)) {
    }
}

void turnMainLoop(int times)
{
    const auto context = Glib::MainContext::get_default();
    while (times-- > 0)
        context->iteration(false);
}

} // namespace KesTest
