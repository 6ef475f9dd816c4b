#include <KesDevice/view/SyncModeInfoWindowPresenter.h>

#include <KesDevice/view/detail/SyncModeInfo.h>

namespace KesDevice {

bool SyncModeInfoWindowPresenter::hasInfo(HardwareManager* hardware)
{
    return hardware && SyncModeInfo::has(hardware->getSyncManager().getActiveMode());
}

void SyncModeInfoWindowPresenter::show(HardwareManager* hardware, Kes::IView* parent)
{
    if (hardware)
        SyncModeInfo::show(hardware->getSyncManager().getActiveMode(), parent);
}

} // namespace KesDevice
