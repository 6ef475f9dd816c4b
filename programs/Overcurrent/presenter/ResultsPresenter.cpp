#include <Overcurrent/presenter/ResultsPresenter.h>

#include <Overcurrent/data/ResultTexts.h>
#include <Overcurrent/data/TestChart.h>
#include <Overcurrent/data/TestOutcome.h>

namespace Overcurrent {

ResultsPresenter::ResultsPresenter(OvercurrentModel& model) : _model(model)
{
    model.signalPlanChanged.connect(sigc::mem_fun(*this, &ResultsPresenter::_update));
    _resultsConnection =
        model.signalResultsChanged.connect([this] { _guard.safeUpdateView([this] { _update(); }); });
    _progressConnection =
        model.signalProgressChanged.connect([this] { _guard.safeUpdateView([this] { _updateProgress(); }); });
    _runningConnection =
        model.signalRunningChanged.connect([this] { _guard.safeUpdateView([this] { _updateProgress(); }); });
    _update();
    _updateProgress();
}

ResultsPresenter::~ResultsPresenter() = default;

void ResultsPresenter::_update()
{
    const auto results = _model.getResults();
    const auto* measured = results ? &*results : nullptr;
    _updateOutcome(measured);
    _updateChart(measured);
    _results.setTable(ResultTexts::createTable(measured));
}

void ResultsPresenter::_updateOutcome(const TestResults* results)
{
    _outcome.setOutcome(TestOutcome::create(results, _model.areResultsLost()));
    _outcome.setOrigin(results ? results->origin : Origin::Device);
    _outcome.setStale(_model.isResultStale());
}

void ResultsPresenter::_updateChart(const TestResults* results)
{
    _chart.setChart(TestChart::create(results ? results->settings : _model.getSettings(),
                                      results ? results->plan : _model.getPlan(), results));
}

void ResultsPresenter::_updateProgress()
{
    _outcome.setRunning(_model.isRunning());
    _outcome.setProgress(_model.getProgress());
}

} // namespace Overcurrent
