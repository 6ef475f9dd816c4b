#include <Overcurrent/presenter/ContentPresenter.h>

#include <KesMeasureView/TestContentView.h>

namespace Overcurrent {

ContentPresenter::ContentPresenter(OvercurrentModel& model)
    : _settings(model),
      _plan(model),
      _results(model),
      _view(std::make_unique<KesMeasure::TestContentView>(*_settings.getView(), *_plan.getView(),
                                                          _plan.getErrorView(), _results.getOutcomeView(),
                                                          _results.getChartView(), _results.getResultsView()))
{}

ContentPresenter::~ContentPresenter() = default;

Kes::IView* ContentPresenter::getView()
{
    return _view.get();
}

} // namespace Overcurrent
