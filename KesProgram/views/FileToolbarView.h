#pragma once

#include <KesProgram/views/IFileToolbarView.h>
#include <KesProgram/views/ToolButton.h>

#include <gtkmm/toolbar.h>

namespace KesProgram {

/// The toolbar of the archive file: New, Open, Save. Save is always on, also while a test runs. GUI thread.
///
/// Its tooltips name the keys of the file menu, but the keys belong to that menu (`FileMenuView`): in a
/// window without it they do nothing. Save names the key of Save as, because the shell's button always asks
/// for a file name; see `FileToolbarPresenter`, which connects the view to the commands of the shell.
class KES_EXPORT FileToolbarView : public Gtk::Toolbar, public IFileToolbarView {
public:
    FileToolbarView();

    /// Switches the button alone: the key follows the file menu.
    void setEnabledNew(bool enabled) override;
    void setEnabledOpen(bool enabled) override;

private:
    ToolButton _new;
    ToolButton _open;
    ToolButton _save;
};

} // namespace KesProgram
