#pragma once

#include <Overcurrent/model/OvercurrentModel.h>
#include <Overcurrent/view/ISettingsView.h>

#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace Overcurrent {

/// Shows the test object's settings. Owned by the content presenter. GUI thread.
class SettingsPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The user wants to edit the test object.
    sigc::signal<void()> signalEdit;

    /// The model outlives the presenter.
    explicit SettingsPresenter(OvercurrentModel& model);
    ~SettingsPresenter() override;

    Kes::IView* getView() override;

private:
    void _update();

    OvercurrentModel& _model;
    std::unique_ptr<ISettingsView> _view;
};

} // namespace Overcurrent
