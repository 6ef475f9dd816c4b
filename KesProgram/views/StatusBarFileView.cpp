#include <KesProgram/views/StatusBarFileView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesProgram/text/Program.h>
#include <KesProgram/views/detail/StatusArea.h>

namespace KesProgram {

namespace {

constexpr int height = 35; // pixels

} // namespace

StatusBarFileView::StatusBarFileView()
    : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, 0), _caption(lng::Program::get("Menu.file") + std::string(": "))
{
    get_style_context()->add_class("fileNameArea");
    set_hexpand(true);
    set_vexpand(true);
    set_size_request(-1, height);
    makeStatusArea(*this);

    _caption.set_no_show_all(true);
    _name.set_ellipsize(Pango::ELLIPSIZE_MIDDLE);
    add(_caption);
    add(_name);
}

void StatusBarFileView::setFileName(const std::string& name)
{
    const Glib::ustring shown = Glib::ustring(name).make_valid();
    _caption.set_visible(!name.empty());
    _name.set_text(shown);
    Kes::GtkWidgetHelper::setTooltip(_name, shown);
    Kes::GtkWidgetHelper::setAccessibleName(*this, name.empty() ? shown : _caption.get_text() + shown);
}

} // namespace KesProgram
