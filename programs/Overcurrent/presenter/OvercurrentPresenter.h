#pragma once

#include <Overcurrent/model/OvercurrentModel.h>

#include <KesTestProgram/TestPresenter.h>

#include <memory>

namespace Overcurrent {

/// The main presenter of the program: that of every test program, with an editor for the plan. GUI thread.
class OvercurrentPresenter : public KesTestProgram::TestPresenter {
public:
    /// The model outlives `signalClosed`.
    explicit OvercurrentPresenter(OvercurrentModel& model) : TestPresenter(model), _model(model) {}

protected:
    std::unique_ptr<KesTestProgram::IPlanEditor> _createPlanEditor() override;

private:
    OvercurrentModel& _model;
};

} // namespace Overcurrent
