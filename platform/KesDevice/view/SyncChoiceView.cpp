#include <KesDevice/view/SyncChoiceView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesDevice/view/detail/DeviceViewText.h>

namespace KesDevice {

using lng::DeviceView::get;

SyncChoiceView::SyncChoiceView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, smallGap),
      _heading(get("Sync.title")),
      _label(get("Sync.mode")),
      _info("help-about-symbolic")
{
    _label.set_mnemonic_widget(_modes);
    Kes::GtkWidgetHelper::setAccessibleName(_modes, get("Sync.modeName"));
    _info.setText(get("Sync.info"));

    auto& line = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_HORIZONTAL, smallGap);
    line.pack_start(_label, Gtk::PACK_SHRINK);
    line.pack_start(_modes, Gtk::PACK_SHRINK);
    line.pack_start(_info, Gtk::PACK_SHRINK);
    pack_start(_heading, Gtk::PACK_SHRINK);
    pack_start(line, Gtk::PACK_SHRINK);
    pack_start(_note, Gtk::PACK_SHRINK);
    show_all();

    _modes.signal_changed().connect(sigc::mem_fun(*this, &SyncChoiceView::_onChanged));
    _info.signal_clicked().connect(signalInfo.make_slot());
}

void SyncChoiceView::setModes(const std::vector<std::string>& names, std::size_t active)
{
    _isSetting = true;
    _modes.remove_all();
    for (const auto& name : names)
        _modes.append(name);
    _modes.set_active(static_cast<int>(active));
    _isSetting = false;
}

void SyncChoiceView::setNote(const std::string& note, bool hasInfo)
{
    _note.setText(note);
    _info.set_sensitive(hasInfo);
}

void SyncChoiceView::_onChanged()
{
    if (!_isSetting && _modes.get_active_row_number() >= 0)
        signalChosen.emit(static_cast<std::size_t>(_modes.get_active_row_number()));
}

} // namespace KesDevice
