#pragma once

#include <Overcurrent/model/OvercurrentModel.h>

#include <KesCommon/Connection.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesTestProgram/IPlanEditor.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace Overcurrent {

class PlanView;

/// Edits the plan, outside of a run. What the user types is in the model's plan at once; what makes no sense
/// is refused in place, and no test starts until it is mended. Owned by the content presenter. GUI thread.
class PlanPresenter : public KesTestProgram::IPlanEditor, public sigc::trackable {
public:
    /// The model outlives the presenter. The form shows its plan at once.
    explicit PlanPresenter(OvercurrentModel& model);
    ~PlanPresenter() override;

    /// The form; it has room of its own below the settings.
    Kes::IView* getView() override;
    /// Why what is typed is no plan; hidden while it is one.
    Kes::IView& getErrorView() override;

private:
    /// Takes over every value that makes sense; the first one that does not is the error.
    void _onEdited();
    /// Shows the model's plan, unless the form says the same in other words or has an error to be mended.
    void _onPlanChanged();
    /// The plan can be edited when a test can be started.
    void _onHardwareRunning();

    OvercurrentModel& _model;
    std::unique_ptr<PlanView> _view;
    /// While the user's change goes into the model, the model's answer does not go into the form.
    bool _isEditing = false;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _canStartConnection;
};

} // namespace Overcurrent
