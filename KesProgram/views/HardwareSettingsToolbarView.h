#pragma once

#include <KesProgram/views/IHardwareSettingsToolbarView.h>
#include <KesProgram/views/ToolButton.h>

#include <gtkmm/toolbar.h>

namespace KesProgram {

/// The toolbar of the hardware settings. GUI thread.
class KES_EXPORT HardwareSettingsToolbarView : public Gtk::Toolbar, public IHardwareSettingsToolbarView {
public:
    HardwareSettingsToolbarView();

    void addToolButton(Kes::IView& view) override;

private:
    ToolButton _settings;
};

} // namespace KesProgram
