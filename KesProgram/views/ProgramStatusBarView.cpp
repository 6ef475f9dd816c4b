#include <KesProgram/views/ProgramStatusBarView.h>

#include <KesProgram/views/detail/StatusArea.h>

#include <atkmm/object.h>

namespace KesProgram {

ProgramStatusBarView::ProgramStatusBarView()
{
    get_style_context()->add_class("statusbar");
    set_vexpand(false);
    makeStatusArea(*this);
    get_accessible()->set_role(Atk::ROLE_STATUSBAR);
}

void ProgramStatusBarView::setInfoArea(Kes::IView* view)
{
    _place(view, 0, 0, 2);
    auto* widget = dynamic_cast<Gtk::Widget*>(view);
    if (!widget)
        return;
    // What happens is announced in the name of the status bar.
    const auto bar = get_accessible();
    const auto area = widget->get_accessible();
    // One that has none yet would not do as a name.
    area->set_description(area->get_description());
    _name = Glib::Binding::bind_property(area->property_accessible_description(),
                                         bar->property_accessible_name(), Glib::BINDING_SYNC_CREATE);
}

void ProgramStatusBarView::setArchiveArea(Kes::IView* view)
{
    _place(view, 0, 1, 1);
}

void ProgramStatusBarView::setHardwareArea(Kes::IView* view)
{
    _place(view, 1, 1, 1);
}

void ProgramStatusBarView::_place(Kes::IView* view, int column, int row, int width)
{
    if (auto* widget = dynamic_cast<Gtk::Widget*>(view))
        attach(*widget, column, row, width, 1);
}

} // namespace KesProgram
