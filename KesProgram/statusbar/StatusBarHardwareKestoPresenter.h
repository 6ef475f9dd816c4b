#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesDevice {
class Kesto;
}

namespace KesProgram {

/// One device in the status bar: its type, its state and its icons. GUI thread.
///
/// The row shows the state as a colour and a sign, and says it in words to assistive technology; a state that
/// is unknown or bad stands in words beside it, too. The type is known once the device has been connected.
class KES_EXPORT StatusBarHardwareKestoPresenter : public Kes::IPresenter {
public:
    /// The device outlives the presenter. It changes on any thread; the row follows when the GUI thread gets
    /// to it, the newest state only.
    explicit StatusBarHardwareKestoPresenter(KesDevice::Kesto& kesto);
    ~StatusBarHardwareKestoPresenter() override;

    Kes::IView* getView() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesProgram
