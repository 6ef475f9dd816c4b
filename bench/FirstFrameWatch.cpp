#include "FirstFrameWatch.h"

#include <X11/Xatom.h>
#include <poll.h>

#include <stdexcept>

namespace {

constexpr int smallestWindow = 200;

/// Windows come and go while they are asked about.
int ignoreErrors(Display*, XErrorEvent*)
{
    return 0;
}

} // namespace

FirstFrameWatch::FirstFrameWatch() : _display(XOpenDisplay(nullptr))
{
    if (!_display)
        throw std::runtime_error("no X server");
    XSetErrorHandler(ignoreErrors);
    int errorBase = 0;
    if (!XDamageQueryExtension(_display, &_damageEvent, &errorBase))
        throw std::runtime_error("the X server has no damage extension");
    int major = 1;
    int minor = 1;
    XDamageQueryVersion(_display, &major, &minor);
    _pidAtom = XInternAtom(_display, "_NET_WM_PID", False);
    XSelectInput(_display, DefaultRootWindow(_display), SubstructureNotifyMask);
    XSync(_display, False);
}

FirstFrameWatch::~FirstFrameWatch()
{
    XCloseDisplay(_display);
}

bool FirstFrameWatch::wait(pid_t process, std::chrono::seconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < end) {
        while (XPending(_display) > 0) {
            XEvent event;
            XNextEvent(_display, &event);
            if (_handle(event, process))
                return true;
        }
        pollfd descriptor{ConnectionNumber(_display), POLLIN, 0};
        poll(&descriptor, 1, 10);
    }
    return false;
}

bool FirstFrameWatch::_handle(XEvent& event, pid_t process)
{
    if (event.type == CreateNotify && event.xcreatewindow.parent == DefaultRootWindow(_display))
        XDamageCreate(_display, event.xcreatewindow.window, XDamageReportNonEmpty);
    if (event.type != _damageEvent + XDamageNotify)
        return false;
    const auto& damage = reinterpret_cast<const XDamageNotifyEvent&>(event);
    const bool found = _isWindowOf(damage.drawable, process);
    if (!found)
        XDamageSubtract(_display, damage.damage, None, None);
    return found;
}

bool FirstFrameWatch::_isWindowOf(Window window, pid_t process) const
{
    XWindowAttributes attributes;
    if (!XGetWindowAttributes(_display, window, &attributes) || attributes.map_state != IsViewable ||
        attributes.width < smallestWindow || attributes.height < smallestWindow)
        return false;
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(_display, window, _pidAtom, 0, 1, False, XA_CARDINAL, &type, &format, &count, &rest,
                       &data);
    const bool matches = data && count == 1 &&
                         *reinterpret_cast<const unsigned long*>(data) == static_cast<unsigned long>(process);
    if (data)
        XFree(data);
    return matches;
}
