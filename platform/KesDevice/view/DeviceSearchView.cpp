#include <KesDevice/view/DeviceSearchView.h>

#include <KesCommon/StringHelper.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/ZoomedIcon.h>
#include <KesDevice/view/detail/DeviceViewText.h>

#include <utility>

namespace KesDevice {

using lng::DeviceView::get;

/// One device that was found, with the command that adds it.
class DeviceSearchView::FoundRow : public Gtk::Box {
public:
    FoundRow()
        : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, wideGap), add(get("Add.add")), _taken(get("Add.inList"))
    {
        get_style_context()->add_class("kes-found-row");
        _address.set_xalign(0.0F);
        _address.set_width_chars(16);
        for (auto* label : {&_identity, &_use})
            wrapText(*label, 8, 44);
        for (auto* label : {&_use, &_taken})
            label->get_style_context()->add_class("dim-label");
        _use.set_no_show_all(true);
        _about.set_valign(Gtk::ALIGN_CENTER);
        _about.pack_start(_identity, Gtk::PACK_SHRINK);
        _about.pack_start(_use, Gtk::PACK_SHRINK);
        _taken.set_no_show_all(true);
        add.set_no_show_all(true);
        add.set_valign(Gtk::ALIGN_CENTER);
        pack_start(_address, Gtk::PACK_SHRINK);
        pack_start(_about, Gtk::PACK_EXPAND_WIDGET);
        pack_start(_taken, Gtk::PACK_SHRINK);
        pack_start(add, Gtk::PACK_SHRINK);
        show_all();
        set_no_show_all(true);
    }

    void setFound(const DeviceSearchState::Found& found)
    {
        if (std::exchange(_shown, found) == found)
            return;
        _address.set_text(found.address);
        _identity.set_text(found.identity);
        _use.set_text(found.use);
        _use.set_visible(!found.use.empty());
        add.set_visible(!found.isTaken);
        _taken.set_visible(found.isTaken);
        Kes::GtkWidgetHelper::setAccessibleName(
            add, Kes::StringHelper::format(get("Add.addFound"), found.address));
    }

    const std::string& getAddress() const { return _shown.address; }

    Gtk::Button add;

private:
    Gtk::Label _address;
    DeviceSearchState::Found _shown;
    Gtk::Box _about{Gtk::ORIENTATION_VERTICAL};
    Gtk::Label _identity;
    Gtk::Label _use;
    Gtk::Label _taken;
};

DeviceSearchView::DeviceSearchView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL, smallGap),
      _heading(get("Add.title")),
      _label(get("Add.address")),
      _add(get("Add.add")),
      _search(get("Search.start")),
      _statusLine(Gtk::ORIENTATION_HORIZONTAL, smallGap),
      _foundList(Gtk::ORIENTATION_VERTICAL, smallGap)
{
    pack_start(_heading, Gtk::PACK_SHRINK);
    _buildAddress();
    _buildSearch();
    show_all();
}

DeviceSearchView::~DeviceSearchView() = default;

void DeviceSearchView::_buildAddress()
{
    _label.set_mnemonic_widget(_address);
    _address.set_width_chars(13);
    _address.set_placeholder_text("192.168.1.20");
    Kes::GtkWidgetHelper::setAccessibleName(_address, get("Add.addressName"));
    _search.set_image(*Gtk::make_managed<Kes::ZoomedIcon>("system-search-symbolic"));
    _search.set_always_show_image(true);

    auto& line = *Gtk::make_managed<Gtk::Box>(Gtk::ORIENTATION_HORIZONTAL, smallGap);
    for (Gtk::Widget* widget : {static_cast<Gtk::Widget*>(&_label), static_cast<Gtk::Widget*>(&_address),
                                static_cast<Gtk::Widget*>(&_add)})
        line.pack_start(*widget, Gtk::PACK_SHRINK);
    line.pack_end(_search, Gtk::PACK_SHRINK);
    pack_start(line, Gtk::PACK_SHRINK);
    pack_start(_problem, Gtk::PACK_SHRINK);

    _address.signal_changed().connect(signalAddressEdited.make_slot());
    _address.signal_activate().connect(sigc::mem_fun(*this, &DeviceSearchView::_onActivate));
    _add.signal_clicked().connect(signalAdd.make_slot());
    _search.signal_clicked().connect(signalSearch.make_slot());
}

void DeviceSearchView::_buildSearch()
{
    _status.set_xalign(0.0F);
    _spinner.set_no_show_all(true);
    _statusLine.pack_start(_spinner, Gtk::PACK_SHRINK);
    _statusLine.pack_start(_status, Gtk::PACK_SHRINK);
    _statusLine.show_all();
    _statusLine.set_no_show_all(true);
    _foundList.set_margin_start(wideGap);
    Kes::GtkWidgetHelper::setAccessibleName(_foundList, get("Search.found"));
    pack_start(_statusLine, Gtk::PACK_SHRINK);
    pack_start(_foundList, Gtk::PACK_SHRINK);
    pack_start(_incomplete, Gtk::PACK_SHRINK);
}

std::string DeviceSearchView::getAddress() const
{
    return _address.get_text().raw();
}

void DeviceSearchView::clearAddress()
{
    _address.set_text({});
}

void DeviceSearchView::focusAddress()
{
    _address.grab_focus();
}

void DeviceSearchView::setProblem(const std::string& problem)
{
    setStyleClass(_address, "error", !problem.empty());
    _problem.setText(problem);
}

void DeviceSearchView::setSearch(const DeviceSearchState& state)
{
    Kes::GtkWidgetHelper::setBusy(_search, state.isRunning);
    _spinner.set_visible(state.isRunning);
    _spinner.property_active() = state.isRunning;
    _status.set_text(state.status);
    _statusLine.set_visible(!state.status.empty());
    _incomplete.setText(state.problem);
    while (_found.size() < state.found.size()) {
        auto& row = *_found.emplace_back(std::make_unique<FoundRow>());
        row.add.signal_clicked().connect([this, &row] { signalAddFound.emit(row.getAddress()); });
        _foundList.pack_start(row, Gtk::PACK_SHRINK);
    }
    for (std::size_t i = 0; i < _found.size(); ++i) {
        _found[i]->set_visible(i < state.found.size());
        if (i < state.found.size())
            _found[i]->setFound(state.found[i]);
    }
}

void DeviceSearchView::_onActivate()
{
    if (_address.get_text_length() > 0) {
        signalAdd.emit();
        return;
    }
    if (auto* window = dynamic_cast<Gtk::Window*>(get_toplevel()))
        window->activate_default();
}

} // namespace KesDevice
