#include <Overcurrent/presenter/OvercurrentPresenter.h>

#include <Overcurrent/presenter/PlanPresenter.h>

namespace Overcurrent {

std::unique_ptr<KesTestProgram::IPlanEditor> OvercurrentPresenter::_createPlanEditor()
{
    return std::make_unique<PlanPresenter>(_model);
}

} // namespace Overcurrent
