#pragma once

#include <Overcurrent/model/OvercurrentModel.h>

#include <KesCommon/Connection.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesMeasureView/ChartView.h>
#include <KesMeasureView/OutcomeView.h>
#include <KesMeasureView/ResultTableView.h>

#include <sigc++/sigc++.h>

namespace Overcurrent {

/// Shows what has been measured, as it is measured: outcome and progress, chart, table. Owned by the content
/// presenter. GUI thread; it hears of the run on the run's thread.
class ResultsPresenter : public sigc::trackable {
public:
    /// The model outlives the presenter.
    explicit ResultsPresenter(OvercurrentModel& model);
    ~ResultsPresenter();

    Kes::IView& getOutcomeView() { return _outcome; }
    Kes::IView& getChartView() { return _chart; }
    Kes::IView& getResultsView() { return _results; }

private:
    void _update();
    void _updateOutcome(const TestResults* results);
    void _updateChart(const TestResults* results);
    void _updateProgress();

    OvercurrentModel& _model;
    KesMeasure::OutcomeView _outcome;
    KesMeasure::ChartView _chart;
    KesMeasure::ResultTableView _results;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _resultsConnection;
    Kes::ScopedConnection _progressConnection;
    Kes::ScopedConnection _runningConnection;
};

} // namespace Overcurrent
