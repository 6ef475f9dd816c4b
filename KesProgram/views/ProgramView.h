#pragma once

#include <KesCommonView/Window.h>
#include <KesCommonView/WindowRectangleManager.h>
#include <KesProgram/views/IProgramView.h>

#include <gtkmm/frame.h>
#include <gtkmm/grid.h>

namespace KesProgram {

/// The main window. Building it loads the style sheets of the shell and of the test-object trees; the sheet
/// with the pictures follows when the window has been drawn once. What has the keyboard and is switched off
/// gives it to the first part of the footer that takes it. GUI thread.
///
/// Control with the keypad's plus, minus and multiply makes texts larger, smaller and normal again, in all
/// windows of the screen; the size that the window had before comes back with the normal texts.
///
/// A slot of `signalClosing` that lets the window close hides it: it is destroyed with this object only.
class KES_EXPORT ProgramView : public Kes::Window, public IProgramView {
public:
    ProgramView();

    /// A window that has been modal once stays modal.
    void open(Kes::IView* parent, bool modal) override;
    void setTitle(const std::string& title) override;
    void setHeader(Kes::IView& view) override;
    void setContent(Kes::IView& view) override;
    void setFooter(Kes::IView& view) override;
    void showMessage(const std::string& text) override;
    void setRectangle(const Kes::RectangleF& rectangle) override;
    Kes::RectangleF getRectangle() const override;
    void close() override;

protected:
    void on_set_focus(Gtk::Widget* focus) override;
    /// Handler of the delete event: true keeps the window open. Any other event is refused.
    bool _onClose(GdkEventAny* event);
    /// Does nothing where the display leaves no place to the program (Wayland).
    void _moveToParentCenter(Gtk::Window& parent);

private:
    bool _onKeyPress(GdkEventKey* event);
    void _onZoomed();
    bool _giveFocus();

    Gtk::Grid _layout;
    Gtk::Widget* _header = nullptr;
    Gtk::Frame _content;
    /// The size before zooming, which may have made the window larger.
    int _width = 0;
    int _height = 0;
    Kes::WindowRectangleManager _rectangle;
};

} // namespace KesProgram
