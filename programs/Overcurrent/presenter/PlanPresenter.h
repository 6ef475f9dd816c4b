#pragma once

#include <Overcurrent/model/OvercurrentModel.h>
#include <Overcurrent/view/IPlanView.h>

#include <KesCommon/Connection.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesTestProgram/IPlanEditor.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace Overcurrent {

/// Edits the plan, outside of a run. What the user types is in the model's plan at once; what makes no sense
/// is refused in place, and no test starts until it is mended. Owned by the content presenter. GUI thread.
class PlanPresenter : public KesTestProgram::IPlanEditor, public sigc::trackable {
public:
    /// The model outlives the presenter.
    explicit PlanPresenter(OvercurrentModel& model);
    ~PlanPresenter() override;

    Kes::IView* getView() override;
    Kes::IView& getErrorView() override { return _view->getErrorView(); }

private:
    void _onEdited();
    void _onPlanChanged();
    void _onHardwareRunning();

    OvercurrentModel& _model;
    std::unique_ptr<IPlanView> _view;
    bool _isEditing = false;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _canStartConnection;
};

} // namespace Overcurrent
