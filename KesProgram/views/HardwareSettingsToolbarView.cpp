#include <KesProgram/views/HardwareSettingsToolbarView.h>

#include <KesProgram/text/Program.h>
#include <KesProgram/views/detail/ToolbarItems.h>

namespace KesProgram {

HardwareSettingsToolbarView::HardwareSettingsToolbarView()
    : _settings("ToolHardwareImage", lng::Program::get("Tool.hardware"))
{
    set_toolbar_style(Gtk::TOOLBAR_ICONS);
    _settings.signal_clicked().connect([this] { signalSettings.emit(); });
    append(_settings);
}

void HardwareSettingsToolbarView::addToolButton(Kes::IView& view)
{
    appendToolView(*this, view);
}

} // namespace KesProgram
