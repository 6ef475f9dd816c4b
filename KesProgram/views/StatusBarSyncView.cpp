#include <KesProgram/views/StatusBarSyncView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesProgram/text/Program.h>

#include <atkmm/object.h>

namespace KesProgram {

StatusBarSyncView::StatusBarSyncView()
    : _box(Gtk::ORIENTATION_HORIZONTAL, 0), _title(lng::Program::get("Status.syncTitle"))
{
    for (const char* name : {"ImageNormalButton", "StatusBarSyncView", "recordValueMargin", "roundedControl",
                             "DefaultControlBorder"})
        get_style_context()->add_class(name);
    _title.get_style_context()->add_class("innerContentMargin");
    _name.get_style_context()->add_class("innerContentMargin");

    set_valign(Gtk::ALIGN_CENTER); // beside many device rows it keeps its height
    _box.pack_start(_title, Gtk::PACK_SHRINK);
    _box.pack_end(_name, Gtk::PACK_SHRINK);
    add(_box);
    signal_clicked().connect([this] { signalRequestInfo.emit(); });
    _updateAccessibleName();
}

void StatusBarSyncView::setName(const std::string& name)
{
    _name.set_text(Glib::ustring(name).make_valid());
    _updateAccessibleName();
}

void StatusBarSyncView::setTooltip(const std::string& text)
{
    const Glib::ustring shown = Glib::ustring(text).make_valid();
    _name.set_tooltip_text(shown);
    // The label is no control: without this the text would not be read out for the button.
    get_accessible()->set_description(shown);
}

void StatusBarSyncView::setEnabledInfo(bool enabled)
{
    set_sensitive(enabled);
}

void StatusBarSyncView::_updateAccessibleName()
{
    const Glib::ustring name = _name.get_text();
    Kes::GtkWidgetHelper::setAccessibleName(*this, name.empty() ? _title.get_text()
                                                                : _title.get_text() + " " + name);
}

} // namespace KesProgram
