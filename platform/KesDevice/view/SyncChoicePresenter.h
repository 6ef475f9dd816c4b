#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesDevice/view/HardwareDraft.h>
#include <KesDevice/view/SyncChoiceView.h>

#include <memory>

namespace KesDevice {

/// Chooses the synchronisation mode of a draft. GUI thread.
class KES_EXPORT SyncChoicePresenter : public Kes::IPresenter, public sigc::trackable {
public:
    explicit SyncChoicePresenter(HardwareDraft& draft);
    ~SyncChoicePresenter() override;

    Kes::IView* getView() override { return _view.get(); }

private:
    void _onChosen(std::size_t index);
    void _onInfo();
    void _showNote();

    HardwareDraft& _draft;
    std::unique_ptr<SyncChoiceView> _view;
};

} // namespace KesDevice
