#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesDevice {
class Kesto;
}

namespace KesProgram {

/// What is switched on at a device, in the status bar: the auxiliary supply. Of a device that is not
/// connected it shows what has been set for the next connection. GUI thread.
///
/// The present state is shown at once. A change, which any thread may make, is shown from the main loop, in
/// the order of the changes, and not at all when the presenter has died before.
class KES_EXPORT StatusBarHardwareKestoIconsPresenter : public Kes::IPresenter {
public:
    /// The device outlives the presenter.
    explicit StatusBarHardwareKestoIconsPresenter(KesDevice::Kesto& kesto);
    ~StatusBarHardwareKestoIconsPresenter() override;

    Kes::IView* getView() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesProgram
