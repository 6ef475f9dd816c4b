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

    /// UTF-8, one line. GTK makes a title of it, in the language of the locale; showing the window replaces
    /// that one, so set the name before.
    void setProgramName(const std::string& name);
    /// Any text, such as "1.2"; an empty one is not shown.
    void setVersion(const std::string& version);

protected:
    void on_show() override;
};

} // namespace Kes
