#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The tool buttons of the archive file. GUI thread.
class KES_EXPORT IFileToolbarView : public Kes::IView {
public:
    /// The user has chosen the command.
    sigc::signal<void()> signalNew;
    sigc::signal<void()> signalOpen;
    sigc::signal<void()> signalSave;

    /// Whether the command can be chosen.
    virtual void setEnabledNew(bool enabled) = 0;
    virtual void setEnabledOpen(bool enabled) = 0;
};

} // namespace KesProgram
