#include <Overcurrent/presenter/ResultsPresenter.h>

#include <Overcurrent/data/Outcome.h>
#include <Overcurrent/text/OvercurrentText.h>
#include <Overcurrent/view/ChartView.h>
#include <Overcurrent/view/OutcomeView.h>
#include <Overcurrent/view/ResultsView.h>

namespace Overcurrent {

namespace {

using lng::Overcurrent::get;

std::string pointText(const ResultRow& row)
{
    return row.multiple + " " + get("Unit.setting") + "\n" + get("Results.expected") + ": " + row.expected +
           " " + row.tolerance + "\n" + get("Results.measured") + ": " + row.measured + "\n" + row.verdict;
}

} // namespace

ResultsPresenter::ResultsPresenter(OvercurrentModel& model)
    : _model(model),
      _outcome(std::make_unique<OutcomeView>()),
      _chart(std::make_unique<ChartView>()),
      _results(std::make_unique<ResultsView>())
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
    _results->setRows(measured ? ResultRow::create(*measured) : std::vector<ResultRow>());
    _results->setValues(ResultValue::create(measured));
}

void ResultsPresenter::_updateOutcome(const TestResults* results)
{
    const auto outcome = Outcome::create(results, _model.areResultsLost());
    _outcome->setOutcome(outcome.text, outcome.mark);
    _outcome->setOrigin(results ? results->origin : Origin::Device);
    _outcome->setStale(_model.isResultStale());
}

void ResultsPresenter::_updateChart(const TestResults* results)
{
    _chart->setChart(ChartData::create(results ? results->settings : _model.getSettings(),
                                       results ? results->plan : _model.getPlan(), results));
    std::vector<std::string> texts;
    if (results)
        for (const auto& row : ResultRow::create(*results))
            texts.push_back(pointText(row));
    _chart->setPointTexts(std::move(texts));
}

void ResultsPresenter::_updateProgress()
{
    _outcome->setRunning(_model.isRunning());
    _outcome->setProgress(_model.getProgress());
}

} // namespace Overcurrent
