#pragma once

#include <KesProgram/views/IStatusBarFileView.h>

#include <gtkmm/box.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// The name of the archive file behind a caption, which is hidden while there is no name. A long path is
/// shortened in the middle; its tooltip and the accessible name have it whole. Bytes that are not UTF-8 are
/// shown as replacement characters. GUI thread.
///
/// The height is fixed, so that a name changes nothing in the window's layout.
class KES_EXPORT StatusBarFileView : public Gtk::Box, public IStatusBarFileView {
public:
    StatusBarFileView();

    void setFileName(const std::string& name) override;

private:
    Gtk::Label _caption;
    Gtk::Label _name;
};

} // namespace KesProgram
