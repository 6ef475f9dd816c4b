#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesDevice {
class Kesto;
}

namespace KesProgram {

/// What is switched on at a device, in the status bar: the auxiliary supply. GUI thread.
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
