#include <KesProgram/views/ProgramStatusBarView.h>

#include <KesProgram/views/detail/StatusArea.h>

namespace KesProgram {

ProgramStatusBarView::ProgramStatusBarView()
{
    get_style_context()->add_class("statusbar");
    set_vexpand(false);
    makeStatusArea(*this);
}

void ProgramStatusBarView::setInfoArea(Kes::IView* view)
{
    _place(view, 0, 0, 2);
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
