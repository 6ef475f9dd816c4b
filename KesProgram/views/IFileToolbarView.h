#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The tool buttons of the archive file. They know no file and ask no question: that is up to whoever
/// connects the signals. GUI thread.
class KES_EXPORT IFileToolbarView : public Kes::IView {
public:
    /// The user has chosen the command.
    sigc::signal<void()> signalNew;
    sigc::signal<void()> signalOpen;
    /// Says nothing about the name under which to save: the shell's presenter asks for one.
    sigc::signal<void()> signalSave;

    /// Whether the command can be chosen; it can at first. Save always can.
    virtual void setEnabledNew(bool enabled) = 0;
    virtual void setEnabledOpen(bool enabled) = 0;
};

} // namespace KesProgram
