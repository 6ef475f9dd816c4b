#include <Overcurrent/view/SettingsView.h>

#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommonView/GtkWidgetHelper.h>

namespace Overcurrent {

SettingsView::SettingsView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL),
      _title(lng::Overcurrent::get("Settings.title"), Gtk::ALIGN_START),
      _edit(lng::Overcurrent::get("Settings.edit"))
{
    get_style_context()->add_class("section");
    _title.get_style_context()->add_class("section-title");
    _lines.get_style_context()->add_class("section-lines");
    _edit.set_tooltip_text(lng::Overcurrent::get("Settings.editTip"));
    _edit.set_halign(Gtk::ALIGN_START);
    _edit.signal_clicked().connect([this] { signalEdit.emit(); });
    pack_start(_title, Gtk::PACK_SHRINK);
    pack_start(_lines, Gtk::PACK_SHRINK);
    pack_start(_edit, Gtk::PACK_SHRINK);
}

void SettingsView::setLines(const std::vector<SettingsSummary::Line>& lines)
{
    Kes::GtkWidgetHelper::removeChildren(_lines);
    int row = 0;
    for (const auto& line : lines) {
        auto& name = *Gtk::manage(new Gtk::Label(line.name, Gtk::ALIGN_START));
        name.get_style_context()->add_class("dim-label");
        auto& value = *Gtk::manage(new Gtk::Label(line.value, Gtk::ALIGN_START));
        value.set_hexpand(true);
        _lines.attach(name, 0, row, 1, 1);
        _lines.attach(value, 1, row, 1, 1);
        ++row;
    }
    _lines.show_all();
}

} // namespace Overcurrent
