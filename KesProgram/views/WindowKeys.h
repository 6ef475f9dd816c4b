#pragma once

#include <KesCommon/Export.h>

#include <gdkmm/types.h>
#include <gtkmm/accelgroup.h>
#include <gtkmm/widget.h>

#include <string>

namespace KesProgram {

/// A key with its modifiers. A value.
struct KES_EXPORT Key {
    /// As GDK names it, such as `GDK_KEY_F5`; letters in lower case.
    unsigned value = 0;
    Gdk::ModifierType modifiers{};

    /// As people read it, such as "Ctrl+N", in the language of the toolkit.
    std::string getName() const;
    /// Whether the event is this key with just these modifiers; Caps Lock and Num Lock do not count as such.
    bool matches(const GdkEventKey& event) const;
};

/// The keys of the shell's commands: Ctrl+N, Ctrl+O, Ctrl+S, Ctrl+Shift+S, F5, Escape, Shift+F5, F1. A
/// program takes other ones for its own.
namespace Keys {

KES_EXPORT extern const Key newFile;
KES_EXPORT extern const Key openFile;
KES_EXPORT extern const Key saveFile;
KES_EXPORT extern const Key saveFileAs;
KES_EXPORT extern const Key start;
KES_EXPORT extern const Key stop;
/// Stops from every window of the program.
KES_EXPORT extern const Key stopAnywhere;
KES_EXPORT extern const Key help;

} // namespace Keys

/// The keys of a view's commands. They work wherever the focus is in the window that the view is part of,
/// go with it to another window, and do nothing while their command is switched off. A member of the view.
/// GUI thread.
class KES_EXPORT WindowKeys {
public:
    explicit WindowKeys(Gtk::Widget& view);
    ~WindowKeys();
    WindowKeys(const WindowKeys&) = delete;
    WindowKeys& operator=(const WindowKeys&) = delete;

    /// The key emits that signal ("activate" of a menu item, "clicked" of a tool button) of the command, as
    /// soon as the view is part of a window; the command may be added before. A menu item shows the key
    /// beside its text.
    void add(Gtk::Widget& command, const char* signal, const Key& key);

private:
    void _leaveWindow(Gtk::Widget* previous);
    void _joinWindow(Gtk::Widget& view);

    sigc::connection _joining;
    Glib::RefPtr<Gtk::AccelGroup> _keys = Gtk::AccelGroup::create();
};

} // namespace KesProgram
