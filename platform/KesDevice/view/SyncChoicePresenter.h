#pragma once

#include <KesCommonView/IPresenter.h>
#include <KesDevice/view/HardwareDraft.h>
#include <KesDevice/view/SyncChoiceView.h>

#include <memory>

namespace KesDevice {

/// Chooses the synchronisation mode of a draft, from all that there are. GUI thread.
///
/// Every mode can be chosen, whichever devices the draft has; a note says so when devices cannot run
/// sequences in it (`SyncMode::isSeqSupported`). What is chosen stands in the draft at once; the draft does
/// not announce it.
class KES_EXPORT SyncChoicePresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The draft outlives the presenter. Its mode is read once: nobody else changes it meanwhile.
    explicit SyncChoicePresenter(HardwareDraft& draft);
    ~SyncChoicePresenter() override;

    /// A part of the settings window, with its own heading.
    Kes::IView* getView() override { return _view.get(); }

private:
    void _onChosen(std::size_t index);
    void _onInfo();
    void _showNote();

    HardwareDraft& _draft;
    std::unique_ptr<SyncChoiceView> _view;
};

} // namespace KesDevice
