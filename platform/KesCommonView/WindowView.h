#pragma once

#include <KesCommonView/IWindowView.h>
#include <KesCommonView/Window.h>

#include <gtkmm/scrolledwindow.h>

namespace Kes {

/// The secondary window: its content scrolls when the window is smaller, Escape closes it. Its first size
/// is that of the content, kept within four fifths of the screen. Closing hides it and emits
/// `signalClosed` once, before `close` returns. GUI thread.
class KES_EXPORT WindowView : public Window, public IWindowView {
public:
    WindowView();
    /// The content, which is not owned, is taken out of the window.
    ~WindowView() override;

    void show(IView* parent) override;
    void close() override;
    void setTitle(const std::string& title) override;
    void setContent(IView& content) override;

protected:
    bool on_delete_event(GdkEventAny* event) override;
    bool on_key_press_event(GdkEventKey* event) override;

private:
    void _removeContent();
    void _setFirstSize(Gtk::Window* parent);

    Gtk::ScrolledWindow _scrolled;
    bool _sized = false;
};

} // namespace Kes
