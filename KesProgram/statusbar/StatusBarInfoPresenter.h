#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesProgram {

class ProgramModel;

/// What the program is doing, in the status bar: the model's state text (`ProgramModel::getState`), whichever
/// thread has set it. GUI thread.
///
/// A change is always shown later, from the main loop: many changes in a row cost one update, with the newest
/// text.
class KES_EXPORT StatusBarInfoPresenter : public Kes::IPresenter {
public:
    /// The model outlives the presenter.
    explicit StatusBarInfoPresenter(ProgramModel& model);
    ~StatusBarInfoPresenter() override;

    Kes::IView* getView() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesProgram
