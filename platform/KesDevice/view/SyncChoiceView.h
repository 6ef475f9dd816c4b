#pragma once

#include <KesCommonView/ChoiceBox.h>
#include <KesDevice/view/DeviceWidgets.h>
#include <KesDevice/view/ISyncChoiceView.h>

namespace KesDevice {

/// A drop-down list of modes with its note. GUI thread.
class KES_EXPORT SyncChoiceView : public Gtk::Box, public ISyncChoiceView {
public:
    SyncChoiceView();

    void setModes(const std::vector<std::string>& names, std::size_t active) override;
    void setNote(const std::string& note, bool hasInfo) override;

private:
    void _onChanged();

    PartHeading _heading;
    Gtk::Label _label;
    Kes::ChoiceBox _modes;
    IconButton _info;
    ProblemLine _note;
    bool _isSetting = false;
};

} // namespace KesDevice
