#pragma once

#include <KesCommonView/ChoiceBox.h>
#include <KesCommonView/IView.h>
#include <KesDevice/view/DeviceWidgets.h>

#include <sigc++/sigc++.h>

#include <cstddef>
#include <string>
#include <vector>

namespace KesDevice {

/// A drop-down list of modes with its note. GUI thread.
class KES_EXPORT SyncChoiceView : public Gtk::Box, public Kes::IView {
public:
    SyncChoiceView();

    /// The index of the mode in the list.
    sigc::signal<void(std::size_t)> signalChosen;
    /// The user wants to read more about the chosen mode.
    sigc::signal<void()> signalInfo;

    void setModes(const std::vector<std::string>& names, std::size_t active);
    /// What the user must know about the chosen mode, empty when nothing; and whether there is more to read.
    void setNote(const std::string& note, bool hasInfo);

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
