#include <KesCommonView/DisplayLoss.h>

#include <X11/Xlib.h>
#include <gdk/gdkwayland.h>
#include <poll.h>
#include <wayland-client-core.h>

#include <utility>

namespace Kes {

namespace {

std::function<void()> lossHandler;
/// That of GTK: it reports the loss and ends the process.
XIOErrorHandler previous = nullptr;
bool isWatching = false;

void tellLoss()
{
    if (const auto handler = std::exchange(lossHandler, nullptr))
        handler();
}

int onLoss(Display* display)
{
    tellLoss();
    return previous ? previous(display) : 0;
}

/// When the compositor has gone GTK ends the process and asks nobody. So this source looks first, before
/// each time GTK writes to the compositor or reads from it.
struct CompositorWatch {
    GSource source;
    int descriptor;

    static gboolean isLost(GSource* source)
    {
        pollfd state{reinterpret_cast<CompositorWatch*>(source)->descriptor, POLLIN, 0};
        return poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR)) != 0;
    }
    static gboolean prepare(GSource* source, int* timeout)
    {
        *timeout = -1;
        return isLost(source);
    }
    static gboolean dispatch(GSource*, GSourceFunc, void*)
    {
        tellLoss();
        return G_SOURCE_REMOVE;
    }
};

void watchCompositor(wl_display* display)
{
    static GSourceFuncs functions{CompositorWatch::prepare,
                                  CompositorWatch::isLost,
                                  CompositorWatch::dispatch,
                                  nullptr,
                                  nullptr,
                                  nullptr};
    auto* source = g_source_new(&functions, sizeof(CompositorWatch));
    const int descriptor = wl_display_get_fd(display);
    reinterpret_cast<CompositorWatch*>(source)->descriptor = descriptor;
    g_source_add_unix_fd(source, descriptor, static_cast<GIOCondition>(G_IO_HUP | G_IO_ERR));
    g_source_set_priority(source, G_PRIORITY_HIGH);
    g_source_attach(source, nullptr);
    g_source_unref(source);
}

} // namespace

void DisplayLoss::setHandler(std::function<void()> handler)
{
    lossHandler = std::move(handler);
    if (std::exchange(isWatching, true))
        return;
    previous = XSetIOErrorHandler(onLoss);
    auto* display = gdk_display_get_default();
    if (GDK_IS_WAYLAND_DISPLAY(display))
        watchCompositor(gdk_wayland_display_get_wl_display(display));
}

} // namespace Kes
