#include <KesCommonView/DisplayLoss.h>

#include <X11/Xlib.h>

#include <utility>

namespace Kes {

namespace {

std::function<void()> lossHandler;
/// That of GTK: it tells of the loss and ends the process.
XIOErrorHandler previous = nullptr;

int onLoss(Display* display)
{
    if (const auto handler = std::exchange(lossHandler, nullptr))
        handler();
    return previous ? previous(display) : 0;
}

} // namespace

void DisplayLoss::setHandler(std::function<void()> handler)
{
    lossHandler = std::move(handler);
    if (!previous)
        previous = XSetIOErrorHandler(onLoss);
}

} // namespace Kes
