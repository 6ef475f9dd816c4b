#include <Overcurrent/presenter/ContentPresenter.h>

#include <Overcurrent/view/ContentView.h>

namespace Overcurrent {

ContentPresenter::ContentPresenter(OvercurrentModel& model)
    : _settings(model),
      _plan(model),
      _results(model),
      _view(std::make_unique<ContentView>(*_settings.getView(), *_plan.getView(), _plan.getErrorView(),
                                          _results.getOutcomeView(), _results.getChartView(),
                                          _results.getResultsView()))
{}

ContentPresenter::~ContentPresenter() = default;

Kes::IView* ContentPresenter::getView()
{
    return _view.get();
}

} // namespace Overcurrent
