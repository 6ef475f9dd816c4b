#pragma once

#include <KesCommonView/ChoiceBox.h>
#include <KesCommonView/IView.h>
#include <KesDevice/view/DeviceWidgets.h>

#include <sigc++/sigc++.h>

#include <cstddef>
#include <string>
#include <vector>

namespace KesDevice {

/// A drop-down list of modes with its note. It knows no modes but their names. GUI thread.
class KES_EXPORT SyncChoiceView : public Gtk::Box, public Kes::IView {
public:
    /// Offers nothing before `setModes`.
    SyncChoiceView();

    /// The user has chosen; the index of the mode in the list.
    sigc::signal<void(std::size_t)> signalChosen;
    /// The user wants to read more about the chosen mode; not without `hasInfo`.
    sigc::signal<void()> signalInfo;

    /// Fills the list and chooses the mode at the index `active`. Emits nothing.
    void setModes(const std::vector<std::string>& names, std::size_t active);
    /// What the user must know about the chosen mode, empty when nothing; and whether there is more to read.
    /// It belongs to one mode: the slot of `signalChosen` sets it again for the next.
    void setNote(const std::string& note, bool hasInfo);

private:
    void _onChanged();

    PartHeading _heading;
    Gtk::Label _label;
    Kes::ChoiceBox _modes;
    /// Off for a mode about which there is no more to say.
    IconButton _info;
    ProblemLine _note;
    /// While `setModes` fills the list, it reports nothing.
    bool _isSetting = false;
};

} // namespace KesDevice
