#include <KesProgram/views/FileMenuView.h>

#include <KesProgram/text/Program.h>

namespace KesProgram {

FileMenuView::FileMenuView()
    : Gtk::MenuItem(lng::Program::get("Menu.file"), false),
      _new(lng::Program::get("Menu.fileNew"), false),
      _open(lng::Program::get("Menu.fileOpen"), false),
      _save(lng::Program::get("Menu.fileSave"), false),
      _saveAs(lng::Program::get("Menu.fileSaveAs"), false)
{
    _new.signal_activate().connect([this] { signalNew.emit(); });
    _open.signal_activate().connect([this] { signalOpen.emit(); });
    _save.signal_activate().connect([this] { signalSave.emit(); });
    _saveAs.signal_activate().connect([this] { signalSaveAs.emit(); });

    _keys.add(_new, "activate", Keys::newFile);
    _keys.add(_open, "activate", Keys::openFile);
    _keys.add(_save, "activate", Keys::saveFile);
    _keys.add(_saveAs, "activate", Keys::saveFileAs);

    for (auto* item : {&_new, &_open, &_save, &_saveAs})
        _menu.append(*item);
    set_submenu(_menu);
    _menu.show_all();
}

void FileMenuView::setEnabledNew(bool enabled)
{
    _new.set_sensitive(enabled);
}

void FileMenuView::setEnabledOpen(bool enabled)
{
    _open.set_sensitive(enabled);
}

} // namespace KesProgram
