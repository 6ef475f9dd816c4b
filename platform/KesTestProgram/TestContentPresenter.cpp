#include <KesTestProgram/TestContentPresenter.h>

#include <KesMeasureView/TestContentView.h>

namespace KesTestProgram {

TestContentPresenter::TestContentPresenter(TestProgramModel& model, std::unique_ptr<IPlanEditor> planEditor)
    : _model(model), _planEditor(std::move(planEditor)), _view(_createView())
{
    model.signalSettingsChanged.connect(sigc::mem_fun(*this, &TestContentPresenter::_updateSettings));
    _resultsConnection =
        model.signalResultsChanged.connect([this] { _guard.safeUpdateView([this] { _updateResults(); }); });
    _progressConnection =
        model.signalProgressChanged.connect([this] { _guard.safeUpdateView([this] { _updateProgress(); }); });
    _runningConnection =
        model.signalRunningChanged.connect([this] { _guard.safeUpdateView([this] { _updateProgress(); }); });
    _canStartConnection =
        model.signalCanStartChanged.connect([this] { _guard.safeUpdateView([this] { _updateCommands(); }); });
    _results.signalRepeat.connect(sigc::hide_return(sigc::mem_fun(model, &TestProgramModel::repeatTest)));
    _results.signalContinue.connect(sigc::hide_return(sigc::mem_fun(model, &TestProgramModel::continueTest)));
    _updateSettings();
    _updateProgress();
}

TestContentPresenter::~TestContentPresenter() = default;

std::unique_ptr<Kes::IView> TestContentPresenter::_createView()
{
    using KesMeasure::TestContentView;
    if (!_planEditor)
        return std::make_unique<TestContentView>(_settings, _outcome, _chart, _results);
    return std::make_unique<TestContentView>(_settings, *_planEditor->getView(), _planEditor->getErrorView(),
                                             _outcome, _chart, _results);
}

void TestContentPresenter::_updateSettings()
{
    _settings.setLines(_model.describeSettings());
    _updateResults();
}

void TestContentPresenter::_updateResults()
{
    const auto test = _model.getMeasuredTest();
    const auto shown = _model.getShownTest();
    _outcome.setOutcome(shown.outcome);
    _outcome.setOrigin(test ? test->origin : KesMeasure::Origin::Device);
    _outcome.setStale(_model.isResultStale());
    _chart.setChart(shown.chart);
    _results.setTable(shown.table);
    _updateCommands();
}

void TestContentPresenter::_updateCommands()
{
    _results.setCommands(_model.whyNotRepeat(), _model.whyNotContinue());
}

void TestContentPresenter::_updateProgress()
{
    _outcome.setRunning(_model.isRunning());
    _outcome.setProgress(_model.getProgress(), _model.getRemaining());
}

} // namespace KesTestProgram
