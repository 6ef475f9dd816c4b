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
