#include <KesCommonView/WindowView.h>

#include <KesCommon/EmitLast.h>
#include <KesCommonView/GtkWidgetHelper.h>

#include <gdk/gdkkeysyms.h>
#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <gtkmm/viewport.h>

#include <algorithm>
#include <typeinfo>

namespace Kes {

namespace {

constexpr int minimumWidth = 320;
constexpr int minimumHeight = 160;

Gdk::Rectangle getScreenArea(Gtk::Window& window)
{
    const auto display = window.get_display();
    const auto place = window.get_window();
    auto monitor = place ? display->get_monitor_at_window(place) : display->get_primary_monitor();
    if (!monitor)
        monitor = display->get_monitor(0);
    Gdk::Rectangle area;
    monitor->get_workarea(area);
    return area;
}

} // namespace

WindowView::WindowView()
{
    get_style_context()->add_class("Window");
    set_type_hint(Gdk::WINDOW_TYPE_HINT_DIALOG);
    set_position(Gtk::WIN_POS_CENTER_ON_PARENT);
    _scrolled.set_policy(Gtk::POLICY_AUTOMATIC, Gtk::POLICY_AUTOMATIC);
    _scrolled.set_propagate_natural_width(true);
    _scrolled.set_propagate_natural_height(true);
    add(_scrolled);
}

WindowView::~WindowView()
{
    _removeContent();
}

void WindowView::show(IView* parent)
{
    auto* parentWindow = GtkWidgetHelper::getParentWindow(parent);
    if (parentWindow && parentWindow != this)
        set_transient_for(*parentWindow);
    _scrolled.show_all();
    if (!_sized)
        _setFirstSize(parentWindow);
    present();
}

void WindowView::close()
{
    if (!get_visible())
        return;
    hide();
    // A slot may destroy this window: nothing comes after the emission.
    Kes::emitLast(signalClosed);
}

void WindowView::setTitle(const std::string& title)
{
    set_title(title);
}

void WindowView::setContent(IView& content)
{
    auto& widget = dynamic_cast<Gtk::Widget&>(content);
    _removeContent();
    _scrolled.add(widget);
    _sized = false;
    if (get_visible())
        _scrolled.show_all();
}

bool WindowView::on_delete_event(GdkEventAny*)
{
    close();
    return true;
}

bool WindowView::on_key_press_event(GdkEventKey* event)
{
    // What has the focus comes first: Escape ends the editing of a cell, not the window.
    if (Window::on_key_press_event(event))
        return true;
    if (event->keyval != GDK_KEY_Escape || (event->state & Gtk::AccelGroup::get_default_mod_mask()) != 0)
        return false;
    close();
    return true;
}

void WindowView::_removeContent()
{
    // A content that cannot scroll by itself stands in a viewport of GTK's.
    if (auto* viewport = dynamic_cast<Gtk::Viewport*>(_scrolled.get_child()))
        GtkWidgetHelper::removeChildren(*viewport);
    GtkWidgetHelper::removeChildren(_scrolled);
}

void WindowView::_setFirstSize(Gtk::Window* parent)
{
    _sized = true;
    const auto area = getScreenArea(parent ? *parent : *this);
    Gtk::Requisition minimum;
    Gtk::Requisition natural;
    _scrolled.get_preferred_size(minimum, natural);
    set_default_size(
        std::clamp(natural.width, minimumWidth, std::max(minimumWidth, area.get_width() * 4 / 5)),
        std::clamp(natural.height, minimumHeight, std::max(minimumHeight, area.get_height() * 4 / 5)));
}

} // namespace Kes
