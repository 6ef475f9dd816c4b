#pragma once

#include <KesProgram/views/IHardwareSettingsToolbarView.h>
#include <KesProgram/views/ToolButton.h>

#include <gtkmm/toolbar.h>

namespace KesProgram {

/// The toolbar of the hardware settings, which a program may lengthen by buttons of its own. GUI thread.
///
/// Its own button comes first and is always on: while the devices are busy, it is the settings window that
/// refuses to be confirmed.
class KES_EXPORT HardwareSettingsToolbarView : public Gtk::Toolbar, public IHardwareSettingsToolbarView {
public:
    HardwareSettingsToolbarView();

    /// The view stays its owner's. One that is not a `Gtk::ToolItem` is put into a tool item, which stays in
    /// the toolbar, empty, when the view dies first.
    void addToolButton(Kes::IView& view) override;

private:
    ToolButton _settings;
};

} // namespace KesProgram
