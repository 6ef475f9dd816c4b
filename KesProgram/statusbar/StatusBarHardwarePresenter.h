#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <memory>

namespace KesProgram {

class ProgramModel;

/// The hardware in the status bar: a row per device of the model's configuration, the synchronisation mode,
/// and the switch of the state updates. Built again whenever the configuration changes.
///
/// GUI thread. A configuration may be changed on any thread; that thread then waits until the rows of the
/// old one are gone, because the old configuration lives no longer than the announcement of the change.
class KES_EXPORT StatusBarHardwarePresenter : public Kes::IPresenter {
public:
    /// The model has been initialised and outlives the presenter.
    explicit StatusBarHardwarePresenter(ProgramModel& model);
    ~StatusBarHardwarePresenter() override;

    Kes::IView* getView() override;

private:
    class Impl;
    std::unique_ptr<Impl> _impl;
};

} // namespace KesProgram
