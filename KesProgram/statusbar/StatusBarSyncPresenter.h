#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesDevice {
class HardwareManager;
}

namespace KesProgram {

/// The synchronisation mode of a configuration in the status bar, as it was when the presenter was made, with
/// the command that explains it; off for a mode without explanation. GUI thread.
///
/// A mode that is changed later in the same configuration is not shown. The settings window makes another
/// configuration, for which `StatusBarHardwarePresenter` makes another presenter.
class KES_EXPORT StatusBarSyncPresenter : public Kes::IPresenter {
public:
    /// The configuration outlives the presenter.
    explicit StatusBarSyncPresenter(KesDevice::HardwareManager& hardware);
    ~StatusBarSyncPresenter() override;

    Kes::IView* getView() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesProgram
