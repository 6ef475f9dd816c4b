#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/aboutdialog.h>

#include <string>

namespace Kes {

/// The about window of a program, which Escape and its button hide. GUI thread.
class KES_EXPORT AboutView : public Gtk::AboutDialog, public IView {
public:
    AboutView();
    ~AboutView() override;

    /// UTF-8, one line.
    void setProgramName(const std::string& name);
    /// An empty version is not shown.
    void setVersion(const std::string& version);

protected:
    void on_show() override;
};

} // namespace Kes
