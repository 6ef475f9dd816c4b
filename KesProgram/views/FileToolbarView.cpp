#include <KesProgram/views/FileToolbarView.h>

#include <KesProgram/text/Program.h>
#include <KesProgram/views/WindowKeys.h>

namespace KesProgram {

FileToolbarView::FileToolbarView()
    : _new("ToolFileNewImage", lng::Program::get("Tool.fileNew")),
      _open("ToolFileOpenImage", lng::Program::get("Tool.fileOpen")),
      _save("ToolFileSaveImage", lng::Program::get("Tool.fileSave"))
{
    set_toolbar_style(Gtk::TOOLBAR_ICONS);
    _new.signal_clicked().connect([this] { signalNew.emit(); });
    _open.signal_clicked().connect([this] { signalOpen.emit(); });
    _save.signal_clicked().connect([this] { signalSave.emit(); });

    _new.tellKey(Keys::newFile);
    _open.tellKey(Keys::openFile);
    // The button always asks for a name.
    _save.tellKey(Keys::saveFileAs);

    for (auto* button : {&_new, &_open, &_save})
        append(*button);
}

void FileToolbarView::setEnabledNew(bool enabled)
{
    _new.set_sensitive(enabled);
}

void FileToolbarView::setEnabledOpen(bool enabled)
{
    _open.set_sensitive(enabled);
}

} // namespace KesProgram
