#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesDevice {
class Kesto;
}

namespace KesProgram {

/// The address of a device in the status bar, with the verdict on its state: unknown, in order, or what is
/// wrong. GUI thread.
///
/// The verdict is `Kesto::getOperationError`, and its text the tooltip of the address; unknown has none. A
/// change comes on any thread and is shown when the GUI thread gets to it, the newest one only.
class KES_EXPORT StatusBarHardwareKestoStatePresenter : public Kes::IPresenter {
public:
    /// The device outlives the presenter.
    explicit StatusBarHardwareKestoStatePresenter(KesDevice::Kesto& kesto);
    ~StatusBarHardwareKestoStatePresenter() override;

    Kes::IView* getView() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesProgram
