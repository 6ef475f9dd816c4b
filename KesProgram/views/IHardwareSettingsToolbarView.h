#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

namespace KesProgram {

/// The tool button of the hardware settings. GUI thread.
class KES_EXPORT IHardwareSettingsToolbarView : public Kes::IView {
public:
    sigc::signal<void()> signalSettings;

    /// Puts a button after those already there. A view that is not a widget is ignored.
    virtual void addToolButton(Kes::IView& view) = 0;
};

} // namespace KesProgram
