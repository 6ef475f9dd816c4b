#pragma once

#include <KesProgram/views/IFileToolbarView.h>
#include <KesProgram/views/ToolButton.h>

#include <gtkmm/toolbar.h>

namespace KesProgram {

/// The toolbar of the archive file: New, Open, Save. Its tooltips name the keys of the file menu. GUI thread.
class KES_EXPORT FileToolbarView : public Gtk::Toolbar, public IFileToolbarView {
public:
    FileToolbarView();

    void setEnabledNew(bool enabled) override;
    void setEnabledOpen(bool enabled) override;

private:
    ToolButton _new;
    ToolButton _open;
    ToolButton _save;
};

} // namespace KesProgram
