#include <KesProgram/views/WindowKeys.h>

#include <gdk/gdkkeysyms.h>
#include <gtkmm/window.h>

namespace KesProgram {

namespace {

constexpr auto control = Gdk::CONTROL_MASK;
constexpr auto none = Gdk::ModifierType();

} // namespace

namespace Keys {

const Key newFile{GDK_KEY_n, control};
const Key openFile{GDK_KEY_o, control};
const Key saveFile{GDK_KEY_s, control};
const Key saveFileAs{GDK_KEY_s, control | Gdk::SHIFT_MASK};
const Key start{GDK_KEY_F5, none};
const Key stop{GDK_KEY_Escape, none};
const Key stopAnywhere{GDK_KEY_F5, Gdk::SHIFT_MASK};
const Key help{GDK_KEY_F1, none};

} // namespace Keys

bool Key::matches(const GdkEventKey& event) const
{
    const unsigned held = event.state & Gtk::AccelGroup::get_default_mod_mask();
    return gdk_keyval_to_lower(event.keyval) == value && held == static_cast<unsigned>(modifiers);
}

std::string Key::getName() const
{
    return Gtk::AccelGroup::get_label(value, modifiers);
}

WindowKeys::WindowKeys(Gtk::Widget& view)
{
    _joining = view.signal_hierarchy_changed().connect([this, &view](Gtk::Widget* previous) {
        _leaveWindow(previous);
        _joinWindow(view);
    });
}

WindowKeys::~WindowKeys()
{
    // The widget reports its own end later than this.
    _joining.disconnect();
}

void WindowKeys::add(Gtk::Widget& command, const char* signal, const Key& key)
{
    command.add_accelerator(signal, _keys, key.value, key.modifiers, Gtk::ACCEL_VISIBLE);
}

void WindowKeys::_leaveWindow(Gtk::Widget* previous)
{
    if (auto* window = dynamic_cast<Gtk::Window*>(previous))
        window->remove_accel_group(_keys);
}

void WindowKeys::_joinWindow(Gtk::Widget& view)
{
    auto* window = dynamic_cast<Gtk::Window*>(view.get_toplevel());
    if (!window)
        return;
    window->add_accel_group(_keys);
    // By itself GTK looks for new keys from an idle handler, when the window has the keyboard already.
    g_signal_emit_by_name(window->gobj(), "keys-changed");
}

} // namespace KesProgram
