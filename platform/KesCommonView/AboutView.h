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

    /// UTF-8, one line.
    void setProgramName(const std::string& name);
    /// Any text, such as "1.2"; an empty one is not shown.
    void setVersion(const std::string& version);

private:
    void _setTitle();
};

} // namespace Kes
