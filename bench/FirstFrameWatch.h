#pragma once

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>

#include <chrono>
#include <vector>

/// Sees on the X server when a process has drawn its first window, without its help.
class FirstFrameWatch {
public:
    /// Throws std::runtime_error when there is no server or it has no damage extension.
    FirstFrameWatch();
    ~FirstFrameWatch();
    FirstFrameWatch(const FirstFrameWatch&) = delete;
    FirstFrameWatch& operator=(const FirstFrameWatch&) = delete;

    /// Returns when something has been drawn into a shown top-level window of the process; false when that
    /// has not happened within the limit. Windows of before the watch, or of its last success, do not count.
    bool wait(pid_t process, std::chrono::seconds limit);

private:
    bool _handle(XEvent& event, pid_t process);
    bool _isWindowOf(Window window, pid_t process) const;

    Display* _display;
    int _damageEvent = 0;
    Atom _pidAtom;
};
