#include <KesTestProgram/TestContentPresenter.h>

#include <KesMeasure/TestEvaluation.h>
#include <KesMeasureView/TestContentView.h>

namespace KesTestProgram {

TestContentPresenter::TestContentPresenter(TestModel& model)
    : _model(model),
      _view(std::make_unique<KesMeasure::TestContentView>(_settings, _outcome, _chart, _results))
{
    model.signalSettingsChanged.connect(sigc::mem_fun(*this, &TestContentPresenter::_updateSettings));
    _resultsConnection =
        model.signalResultsChanged.connect([this] { _guard.safeUpdateView([this] { _updateResults(); }); });
    _progressConnection =
        model.signalProgressChanged.connect([this] { _guard.safeUpdateView([this] { _updateProgress(); }); });
    _runningConnection =
        model.signalRunningChanged.connect([this] { _guard.safeUpdateView([this] { _updateProgress(); }); });
    _updateSettings();
    _updateProgress();
}

TestContentPresenter::~TestContentPresenter() = default;

void TestContentPresenter::_updateSettings()
{
    _settings.setLines(_model.createTest()->describe());
    _updateResults();
}

void TestContentPresenter::_updateResults()
{
    namespace TestEvaluation = KesMeasure::TestEvaluation;
    const auto shown = _model.getTestInView();
    const auto* record = shown.getRecord();
    const auto plan = shown.test->createPlan();
    _outcome.setOutcome(TestEvaluation::createOutcome(plan, record, _model.areResultsLost()));
    _outcome.setOrigin(record ? record->origin : KesMeasure::Origin::Device);
    _outcome.setStale(_model.isResultStale());
    _chart.setChart(TestEvaluation::createChart(plan, record));
    _results.setTable(TestEvaluation::createTable(plan, record));
}

void TestContentPresenter::_updateProgress()
{
    _outcome.setRunning(_model.isRunning());
    _outcome.setProgress(_model.getProgress());
}

} // namespace KesTestProgram
