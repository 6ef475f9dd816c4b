#include <KesDevice/view/HardwareSettingsView.h>

#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/Style.h>
#include <KesCommonView/ZoomedIcon.h>
#include <KesDevice/view/detail/DeviceViewText.h>

#include <gtkmm/adjustment.h>
#include <gtkmm/buttonbox.h>
#include <gtkmm/separator.h>

namespace KesDevice {

namespace {

using lng::DeviceView::get;

constexpr int partGap = 18;
/// Room for a few devices, for what is shown beside their addresses, and for what a search finds.
constexpr int partCharacters = 84;
constexpr int partLines = 28;
/// In pixels; below it the whole window scrolls.
constexpr int smallestHeight = 110;

} // namespace

HardwareSettingsView::HardwareSettingsView()
    : Gtk::Box(Gtk::ORIENTATION_VERTICAL),
      _noticeLine(Gtk::ORIENTATION_HORIZONTAL, smallGap),
      _parts(Gtk::ORIENTATION_VERTICAL, partGap, partCharacters, partLines),
      _buttons(Gtk::ORIENTATION_HORIZONTAL, smallGap),
      _cancel(get("Settings.cancel")),
      _ok(get("Settings.ok"))
{
    KesView::Style::setStyle("KesDevice/KesDevice.css");
    get_style_context()->add_class("kes-hardware-settings");
    _buildNotice();
    _buildParts();
    pack_start(*Gtk::make_managed<Gtk::Separator>(), Gtk::PACK_SHRINK);
    _buildButtons();
    show_all();

    _window.setTitle(get("Settings.title"));
    _window.setContent(*this);
    _ok.set_can_default(true);
    _window.set_default(_ok);
    _window.signalClosed.connect(sigc::mem_fun(*this, &HardwareSettingsView::_onWindowClosed));
}

HardwareSettingsView::~HardwareSettingsView()
{
    Kes::GtkWidgetHelper::removeChildren(_parts);
}

void HardwareSettingsView::_buildNotice()
{
    auto& icon = *Gtk::make_managed<Kes::ZoomedIcon>("dialog-information-symbolic");
    wrapText(_notice, 20, 80);
    _noticeLine.get_style_context()->add_class("kes-notice");
    _noticeLine.pack_start(icon, Gtk::PACK_SHRINK);
    _noticeLine.pack_start(_notice, Gtk::PACK_EXPAND_WIDGET);
    _noticeLine.show_all();
    _noticeLine.set_no_show_all(true);
    pack_start(_noticeLine, Gtk::PACK_SHRINK);
}

void HardwareSettingsView::_buildParts()
{
    _parts.property_margin() = wideGap;
    _parts.set_focus_vadjustment(_scrolled.get_vadjustment());
    _scrolled.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
    _scrolled.set_propagate_natural_width(true);
    _scrolled.set_propagate_natural_height(true);
    _scrolled.set_min_content_height(smallestHeight);
    _scrolled.add(_parts);
    pack_start(_scrolled, Gtk::PACK_EXPAND_WIDGET);
}

void HardwareSettingsView::_buildButtons()
{
    _buttons.property_margin() = wideGap;
    _buttons.pack_start(_problem, Gtk::PACK_EXPAND_WIDGET);
    auto& pair = *Gtk::make_managed<Gtk::ButtonBox>();
    pair.set_layout(Gtk::BUTTONBOX_END);
    pair.set_spacing(smallGap);
    pair.add(_cancel);
    pair.add(_ok);
    _buttons.pack_end(pair, Gtk::PACK_SHRINK);
    pack_start(_buttons, Gtk::PACK_SHRINK);
    _cancel.signal_clicked().connect(sigc::mem_fun(_window, &Kes::WindowView::close));
    _ok.signal_clicked().connect(signalConfirmed.make_slot());
}

void HardwareSettingsView::setParts(Kes::IView& devices, Kes::IView& search, Kes::IView& sync)
{
    _parts.pack_start(dynamic_cast<Gtk::Widget&>(devices), Gtk::PACK_EXPAND_WIDGET);
    for (auto* part : {&search, &sync})
        _parts.pack_start(dynamic_cast<Gtk::Widget&>(*part), Gtk::PACK_SHRINK);
}

void HardwareSettingsView::setNotice(const std::string& notice)
{
    _notice.set_text(notice);
    _noticeLine.set_visible(!notice.empty());
}

void HardwareSettingsView::setProblem(const std::string& problem)
{
    _problem.setText(problem);
}

void HardwareSettingsView::open(Kes::IView* parent, bool modal)
{
    _window.set_modal(modal);
    _window.show(parent);
}

void HardwareSettingsView::close()
{
    _isClosing = true;
    _window.close();
}

void HardwareSettingsView::_onWindowClosed()
{
    if (!_isClosing)
        signalCancelled.emit();
}

} // namespace KesDevice
