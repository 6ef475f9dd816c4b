#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesDevice/view/DeviceIdentification.h>
#include <KesDevice/view/DeviceListView.h>
#include <KesDevice/view/HardwareDraft.h>

#include <memory>

namespace KesDevice {

/// The devices of a draft: their order, identity and auxiliary supply. What the user does changes the draft
/// at once, and the list follows the draft, whoever has changed it. Adding devices is the matter of
/// `DeviceSearchPresenter`. GUI thread.
class KES_EXPORT DeviceListPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// Both outlive the presenter.
    DeviceListPresenter(HardwareDraft& draft, DeviceIdentification& identification);
    ~DeviceListPresenter() override;

    /// The list, to be placed by the window; it scrolls by itself.
    Kes::IView* getView() override { return _view.get(); }

    /// Puts the focus on the first refused voltage; false when there is none. To be asked before the draft is
    /// taken.
    bool focusProblem();

private:
    void _onIdentify(std::size_t index);
    void _onChanged();

    HardwareDraft& _draft;
    DeviceIdentification& _identification;
    std::unique_ptr<DeviceListView> _view;
};

} // namespace KesDevice
