#include <KesProgram/views/ProgramView.h>

#include <KesCommonView/DialogView.h>
#include <KesCommonView/FirstFrame.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/Style.h>
#include <KesCommonView/StyleZoomHelper.h>
#include <KesProgram/views/detail/Pictures.h>

#include <gdk/gdkkeysyms.h>
#include <glibmm/main.h>

#include <functional>

namespace KesProgram {

ProgramView::ProgramView() : _rectangle(*this)
{
    KesView::Style::setStyle({"style.css", "KesTreeManager/KesTree.css", "KesTreeRelay/KesTreeRelay.css"});
    afterFirstFrame([] {
        Pictures::load();
        Kes::FirstFrame::tellDrawn();
    });

    signal_key_press_event().connect(sigc::mem_fun(*this, &ProgramView::_onKeyPress), false);
    get_style_context()->add_class("Window");
    KesView::StyleZoomHelper::signalZoomed().connect(sigc::mem_fun(*this, &ProgramView::_onZoomed));
    signal_delete_event().connect(sigc::mem_fun(*this, &ProgramView::_onClose));

    _content.get_style_context()->add_class("WindowContent");
    _content.set_hexpand(true);
    _content.set_vexpand(true);
    _layout.attach(_content, 0, 1, 1, 1);
    add(_layout);
}

void ProgramView::open(Kes::IView* parent, bool modal)
{
    if (auto* window = Kes::GtkWidgetHelper::getParentWindow(parent)) {
        // A reference to a trackable takes the slot away should the parent be gone by then.
        signal_realize().connect(
            sigc::bind(sigc::mem_fun(*this, &ProgramView::_moveToParentCenter), std::ref(*window)));
    }
    if (modal)
        set_modal(true);
    show_all();
}

void ProgramView::setTitle(const std::string& title)
{
    set_title(title);
}

void ProgramView::setHeader(Kes::IView& view)
{
    // The header so far may have died since; the grid knows.
    if (_header && _layout.get_child_at(0, 0) == _header)
        Kes::GtkWidgetHelper::removeChild(_layout, *_header);
    _header = dynamic_cast<Gtk::Widget*>(&view);
    if (_header)
        _layout.attach(*_header, 0, 0, 1, 1);
}

void ProgramView::setContent(Kes::IView& view)
{
    Kes::GtkWidgetHelper::removeChildren(_content);
    _content.add(dynamic_cast<Gtk::Widget&>(view));
    _content.show_all();
}

void ProgramView::setFooter(Kes::IView& view)
{
    _layout.attach(dynamic_cast<Gtk::Widget&>(view), 0, 2, 1, 1);
}

void ProgramView::showMessage(const std::string& text)
{
    Kes::DialogView::show(this, text, "", Kes::DialogResult::Ok);
}

void ProgramView::setRectangle(const Kes::RectangleF& rectangle)
{
    _rectangle.setRectangle(rectangle);
}

Kes::RectangleF ProgramView::getRectangle() const
{
    return _rectangle.getRectangle();
}

void ProgramView::close()
{
    Gtk::Window::close();
}

bool ProgramView::_onClose(GdkEventAny* event)
{
    if (event->type != GDK_DELETE)
        return true;
    return signalClosing.emit();
}

bool ProgramView::_onKeyPress(GdkEventKey* event)
{
    if (event->state != GDK_CONTROL_MASK)
        return false;
    if (KesView::StyleZoomHelper::getZoom() == 100)
        get_size(_width, _height);
    switch (event->keyval) {
    case GDK_KEY_KP_Add:
        KesView::StyleZoomHelper::zoomIn();
        break;
    case GDK_KEY_KP_Subtract:
        KesView::StyleZoomHelper::zoomOut();
        break;
    case GDK_KEY_KP_Multiply:
        KesView::StyleZoomHelper::zoomDefault();
        break;
    default:
        break;
    }
    return false;
}

void ProgramView::on_set_focus(Gtk::Widget* focus)
{
    Kes::Window::on_set_focus(focus);
    // Not at once: who has taken the focus away may be about to give it to something else.
    if (!focus)
        Glib::signal_idle().connect(sigc::mem_fun(*this, &ProgramView::_giveFocus));
}

bool ProgramView::_giveFocus()
{
    auto* footer = _layout.get_child_at(0, 2);
    if (footer && get_mapped() && !get_focus())
        footer->child_focus(Gtk::DIR_TAB_FORWARD);
    return false;
}

void ProgramView::_onZoomed()
{
    if (KesView::StyleZoomHelper::getZoom() == 100 && _width > 0)
        resize(_width, _height);
}

void ProgramView::_moveToParentCenter(Gtk::Window& parent)
{
    if (!Kes::WindowRectangleManager::canPlace(*this))
        return;
    int x = 0;
    int y = 0;
    int parentWidth = 0;
    int parentHeight = 0;
    parent.get_position(x, y);
    parent.get_size(parentWidth, parentHeight);

    int width = get_allocated_width();
    int height = get_allocated_height();
    if (width < 2)
        get_default_size(width, height);
    move(x + (parentWidth - width) / 2, y + (parentHeight - height) / 2);
}

} // namespace KesProgram
