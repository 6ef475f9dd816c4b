#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/aboutdialog.h>

#include <string>

namespace Kes {

/// The about window of a program. Escape and its button only hide it, so its owner may present it again.
/// Its title and its button are in the language of the programs, whatever the locale. GUI thread.
class KES_EXPORT AboutView : public Gtk::AboutDialog, public IView {
public:
    AboutView();
    ~AboutView() override;

    /// UTF-8, one line. Shown large, above the version; also while the window is open.
    void setProgramName(const std::string& name);
    /// Any text in UTF-8, such as "1.2"; an empty one is not shown. Also while the window is open.
    void setVersion(const std::string& version);

private:
    /// With each name and version GTK makes a title of its own, in the language of the locale.
    void _setTitle();
};

} // namespace Kes
