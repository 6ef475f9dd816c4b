#pragma once

#include <Overcurrent/presenter/PlanPresenter.h>
#include <Overcurrent/presenter/ResultsPresenter.h>
#include <Overcurrent/presenter/SettingsPresenter.h>

#include <KesCommonView/IPresenter.h>

#include <memory>

namespace Overcurrent {

/// The content of the program's window. Owned by the main presenter. GUI thread.
class ContentPresenter : public Kes::IPresenter {
public:
    /// The model outlives the presenter.
    explicit ContentPresenter(OvercurrentModel& model);
    ~ContentPresenter() override;

    Kes::IView* getView() override;

    /// The user wants to edit the test object.
    sigc::signal<void()>& signalEdit() { return _settings.signalEdit; }

private:
    SettingsPresenter _settings;
    PlanPresenter _plan;
    ResultsPresenter _results;
    std::unique_ptr<Kes::IView> _view;
};

} // namespace Overcurrent
