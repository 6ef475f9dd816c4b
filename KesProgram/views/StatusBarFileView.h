#pragma once

#include <KesProgram/views/IStatusBarFileView.h>

#include <gtkmm/box.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// The name of the archive file behind a caption. A long path is shortened in the middle; its tooltip has
/// it whole. GUI thread.
class KES_EXPORT StatusBarFileView : public Gtk::Box, public IStatusBarFileView {
public:
    StatusBarFileView();

    void setFileName(const std::string& name) override;

private:
    Gtk::Label _caption;
    Gtk::Label _name;
};

} // namespace KesProgram
