#include <KesDevice/view/SyncChoicePresenter.h>

#include <KesDevice/view/SyncChoiceView.h>
#include <KesDevice/view/detail/DeviceViewText.h>
#include <KesDevice/view/detail/SyncModeInfo.h>

namespace KesDevice {

namespace {

std::string nameOf(const SyncMode& mode)
{
    return mode.getName() ? mode.getName() : mode.getIdentifier();
}

} // namespace

SyncChoicePresenter::SyncChoicePresenter(HardwareDraft& draft)
    : _draft(draft), _view(std::make_unique<SyncChoiceView>())
{
    std::vector<std::string> names;
    for (int kind = 0; kind < SyncModeCount; ++kind)
        names.push_back(nameOf(SyncMode::get(static_cast<SyncModeKind>(kind))));
    _view->setModes(names, static_cast<std::size_t>(_draft.getSyncMode().getKind()));
    _showNote();
    _view->signalChosen.connect(sigc::mem_fun(*this, &SyncChoicePresenter::_onChosen));
    _view->signalInfo.connect(sigc::mem_fun(*this, &SyncChoicePresenter::_onInfo));
}

SyncChoicePresenter::~SyncChoicePresenter() = default;

void SyncChoicePresenter::_onChosen(std::size_t index)
{
    if (index >= static_cast<std::size_t>(SyncModeCount))
        return;
    _draft.setSyncMode(static_cast<SyncModeKind>(index));
    _showNote();
}

void SyncChoicePresenter::_onInfo()
{
    SyncModeInfo::show(_draft.getSyncMode(), _view.get());
}

void SyncChoicePresenter::_showNote()
{
    const auto& mode = _draft.getSyncMode();
    _view->setNote(mode.isSeqSupported() ? "" : lng::DeviceView::get("Sync.noSequences"),
                   SyncModeInfo::has(mode));
}

} // namespace KesDevice
