#include <KesDevice/view/detail/SyncModeInfo.h>

#include <KesCommonView/DialogPresenter.h>

namespace KesDevice::SyncModeInfo {

bool has(const SyncMode& mode)
{
    return mode.getInfo() && *mode.getInfo() != '\0';
}

void show(const SyncMode& mode, Kes::IView* parent)
{
    if (has(mode))
        Kes::DialogPresenter::show(parent, mode.getInfo(), mode.getName() ? mode.getName() : "",
                                   Kes::DialogResult::Ok);
}

} // namespace KesDevice::SyncModeInfo
