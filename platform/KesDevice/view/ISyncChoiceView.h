#pragma once

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <cstddef>
#include <string>
#include <vector>

namespace KesDevice {

/// Where the synchronisation mode is chosen. GUI thread.
class KES_EXPORT ISyncChoiceView : public Kes::IView {
public:
    /// The index of the mode in the list.
    sigc::signal<void(std::size_t)> signalChosen;
    /// The user wants to read more about the chosen mode.
    sigc::signal<void()> signalInfo;

    virtual void setModes(const std::vector<std::string>& names, std::size_t active) = 0;
    /// What the user must know about the chosen mode, empty when nothing; and whether there is more to read.
    virtual void setNote(const std::string& note, bool hasInfo) = 0;
};

} // namespace KesDevice
