#include <KesMeasureView/SettingsView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesMeasure/MeasureText.h>

#include <algorithm>

namespace KesMeasure {

namespace {

/// In characters; longer names and values get a line more.
constexpr int widestName = 19;
constexpr int leastValue = 20;
constexpr int widestValue = 29;

/// Breaks lines from `most` characters on, and as early as at `least` where there is no room.
void wrap(Gtk::Label& label, int least, int most)
{
    label.set_line_wrap(true);
    label.set_xalign(0.0f);
    label.set_valign(Gtk::ALIGN_START);
    label.set_width_chars(std::min(static_cast<int>(label.get_text().size()), least));
    label.set_max_width_chars(most);
}

} // namespace

SettingsView::SettingsView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL),
      _title(lng::Measure::get("Settings.title"), Gtk::ALIGN_START),
      _edit(lng::Measure::get("Settings.edit"))
{
    get_style_context()->add_class("section");
    _title.get_style_context()->add_class("section-title");
    _lines.get_style_context()->add_class("section-lines");
    _edit.set_tooltip_text(lng::Measure::get("Settings.editTip"));
    _edit.set_halign(Gtk::ALIGN_START);
    _edit.signal_clicked().connect([this] { signalEdit.emit(); });
    pack_start(_title, Gtk::PACK_SHRINK);
    pack_start(_lines, Gtk::PACK_SHRINK);
    pack_start(_edit, Gtk::PACK_SHRINK);
}

void SettingsView::setLines(const std::vector<TextLine>& lines)
{
    Kes::GtkWidgetHelper::removeChildren(_lines);
    int row = 0;
    for (const auto& line : lines) {
        auto& name = *Gtk::manage(new Gtk::Label(line.name, Gtk::ALIGN_START));
        const bool isTitle = line.value.empty();
        if (!isTitle)
            wrap(name, widestName, widestName);
        name.get_style_context()->add_class(isTitle ? "settings-title" : "dim-label");
        _lines.attach(name, 0, row, isTitle ? 2 : 1, 1);
        if (!isTitle) {
            auto& value = *Gtk::manage(new Gtk::Label(line.value, Gtk::ALIGN_START));
            value.set_hexpand(true);
            wrap(value, leastValue, widestValue);
            _lines.attach(value, 1, row, 1, 1);
        }
        ++row;
    }
    _lines.show_all();
}

} // namespace KesMeasure
