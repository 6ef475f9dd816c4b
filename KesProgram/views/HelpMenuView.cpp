#include <KesProgram/views/HelpMenuView.h>

#include <KesProgram/text/Program.h>

namespace KesProgram {

HelpMenuView::HelpMenuView()
    : Gtk::MenuItem(lng::Program::get("Menu.help"), false),
      _about(lng::Program::get("Menu.about"), false),
      _help(lng::Program::get("Menu.help"), false)
{
    _about.signal_activate().connect([this] { signalAbout.emit(); });
    _help.signal_activate().connect([this] { signalHelp.emit(); });

    _keys.add(_help, "activate", Keys::help);

    _menu.append(_about);
    _menu.append(_help);
    set_submenu(_menu);
    _menu.show_all();
}

} // namespace KesProgram
