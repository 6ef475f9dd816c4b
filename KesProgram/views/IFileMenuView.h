#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The menu of the archive file. It knows no file and asks no question: that is up to whoever connects the
/// signals. GUI thread.
class KES_EXPORT IFileMenuView : public Kes::IView {
public:
    /// The user has chosen the command.
    sigc::signal<void()> signalNew;
    sigc::signal<void()> signalOpen;
    /// Under the name that the document has. A new one has none: the slot then does as for `signalSaveAs`.
    sigc::signal<void()> signalSave;
    sigc::signal<void()> signalSaveAs;

    /// Whether the command can be chosen; it can at first. Save and Save as always can.
    virtual void setEnabledNew(bool enabled) = 0;
    virtual void setEnabledOpen(bool enabled) = 0;
};

} // namespace KesProgram
