#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesDevice/view/DeviceIdentification.h>
#include <KesDevice/view/DeviceListView.h>
#include <KesDevice/view/HardwareDraft.h>

#include <memory>

namespace KesDevice {

/// The devices of a draft: their order, identity and auxiliary supply. GUI thread.
class KES_EXPORT DeviceListPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    DeviceListPresenter(HardwareDraft& draft, DeviceIdentification& identification);
    ~DeviceListPresenter() override;

    Kes::IView* getView() override { return _view.get(); }

    /// Puts the focus on the first refused value; false when there is none.
    bool focusProblem();

private:
    void _onIdentify(std::size_t index);
    void _onChanged();

    HardwareDraft& _draft;
    DeviceIdentification& _identification;
    std::unique_ptr<DeviceListView> _view;
};

} // namespace KesDevice
