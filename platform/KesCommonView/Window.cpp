#include <KesCommonView/Window.h>

#include <KesCommonView/detail/WindowIcons.h>

#include <glibmm/main.h>

namespace Kes {

namespace {

/// In milliseconds.
constexpr unsigned longestWait = 1000;

} // namespace

Window::Window()
{
    afterFirstFrame([this] { set_icon_list(getWindowIcons()); });
}

Window::~Window()
{
    _waiting.disconnect();
}

void Window::afterFirstFrame(const sigc::slot<void()>& slot)
{
    _firstFrame.connect(slot);
    if (_waiting.connected())
        return;
    _drawn = signal_draw().connect(sigc::mem_fun(*this, &Window::_onFirstDraw));
    _waiting = Glib::signal_timeout().connect(sigc::mem_fun(*this, &Window::_onFirstFrame), longestWait);
}

bool Window::_onFirstDraw(const Cairo::RefPtr<Cairo::Context>&)
{
    // Not from here: what is being drawn must not change.
    _drawn.disconnect();
    _waiting.disconnect();
    _waiting = Glib::signal_idle().connect(sigc::mem_fun(*this, &Window::_onFirstFrame));
    return false;
}

bool Window::_onFirstFrame()
{
    _drawn.disconnect();
    _waiting.disconnect();
    const auto slots = std::exchange(_firstFrame, {});
    slots.emit();
    return false;
}

} // namespace Kes
