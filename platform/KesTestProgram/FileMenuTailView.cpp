#include <KesTestProgram/FileMenuTailView.h>

#include <KesProgram/text/Program.h>

#include <gtkmm/menu.h>

namespace KesTestProgram {

FileMenuTailView::FileMenuTailView(Kes::IView& fileMenu, Kes::IView& recentFiles)
    : _recent(lng::Program::get("Menu.fileRecents")), _exit(lng::Program::get("Menu.exit"))
{
    auto& menu = *dynamic_cast<Gtk::MenuItem&>(fileMenu).get_submenu();
    _recent.set_submenu(dynamic_cast<Gtk::Menu&>(recentFiles));
    _exit.signal_activate().connect([this] { signalExit.emit(); });
    for (Gtk::MenuItem* item : {static_cast<Gtk::MenuItem*>(&_firstSeparator), &_recent,
                                static_cast<Gtk::MenuItem*>(&_secondSeparator), &_exit}) {
        menu.append(*item);
        item->show();
    }
}

void FileMenuTailView::setRecentEnabled(bool enabled)
{
    _recent.set_sensitive(enabled);
}

} // namespace KesTestProgram
