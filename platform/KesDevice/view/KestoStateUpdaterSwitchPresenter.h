#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesDevice {

/// The switch that turns the periodic state updates of the devices on and off, for the status bar. It follows
/// `KestoStateGlobalUpdater`. Switching is carried out on a thread of its own, since it may wait for a device
/// that is just being asked; the destructor waits for it. GUI thread.
///
/// Until that is done the switch shows the wish. The user may change it meanwhile: the last wish counts. When
/// the system has no thread to give, the switch goes back.
class KES_EXPORT KestoStateUpdaterSwitchPresenter : public Kes::IPresenter {
public:
    KestoStateUpdaterSwitchPresenter();
    ~KestoStateUpdaterSwitchPresenter() override;

    Kes::IView* getView() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesDevice
