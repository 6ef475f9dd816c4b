#pragma once

#include <Overcurrent/model/OvercurrentModel.h>

#include <KesTestProgram/TestPresenter.h>

#include <memory>

namespace Overcurrent {

/// The main presenter of the program: that of every test program, with an editor for the plan. Made by
/// `KesTestProgram::createTestProgram`. GUI thread.
class OvercurrentPresenter : public KesTestProgram::TestPresenter {
public:
    /// The model outlives `signalClosed`.
    explicit OvercurrentPresenter(OvercurrentModel& model) : TestPresenter(model), _model(model) {}

protected:
    /// Called once, when the window has been drawn.
    std::unique_ptr<KesTestProgram::IPlanEditor> _createPlanEditor() override;

private:
    /// The one of the base class, with its own type.
    OvercurrentModel& _model;
};

} // namespace Overcurrent
