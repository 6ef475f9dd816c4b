#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesProgram {

class IHardwareSettingsToolbarView;
class ProgramBasePresenter;

/// The tool button of the hardware settings. Made and owned by the program. GUI thread.
///
/// The button opens the window (`ProgramBasePresenter::requestHardware`) and is always on. While the devices
/// are busy the settings can be looked at, and the window refuses to be confirmed.
class KES_EXPORT HardwareSettingsToolbarPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The shell outlives the presenter.
    explicit HardwareSettingsToolbarPresenter(ProgramBasePresenter* shell);
    ~HardwareSettingsToolbarPresenter() override;

    /// A toolbar, for `ProgramMainMenuPresenter::addToolbar`.
    Kes::IView* getView() override;

    /// Puts a button of the program after those already there. The view stays its presenter's.
    void addToolButton(Kes::IView& view);

private:
    std::unique_ptr<IHardwareSettingsToolbarView> _view;
};

} // namespace KesProgram
