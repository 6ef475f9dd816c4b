#pragma once

#include <KesCommonView/IWindowView.h>
#include <KesCommonView/Window.h>

#include <gtkmm/scrolledwindow.h>

namespace Kes {

/// The secondary window: its content scrolls when the window is smaller, Escape closes it unless the widget
/// with the focus uses the key. Closing, also by the window manager, hides it and emits `signalClosed`
/// once, before `close` returns; it can be shown again. It is not modal unless its owner makes it so. GUI
/// thread.
///
/// Its first size is that of the content, at least 320 x 160 pixels and at most four fifths of the work
/// area of the parent's screen. Later it is as the user leaves it, until it is shown with another content.
class KES_EXPORT WindowView : public Window, public IWindowView {
public:
    WindowView();
    /// The content, which is not owned, is taken out of the window and lives on, without a window.
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
