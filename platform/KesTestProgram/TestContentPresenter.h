#pragma once

#include <KesTestProgram/IPlanEditor.h>
#include <KesTestProgram/TestProgramModel.h>

#include <KesCommon/Connection.h>
#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>
#include <KesCommonView/UpdateViewGuard.h>
#include <KesMeasureView/ChartView.h>
#include <KesMeasureView/OutcomeView.h>
#include <KesMeasureView/ResultTableView.h>
#include <KesMeasureView/SettingsView.h>

#include <sigc++/sigc++.h>

#include <memory>

namespace KesTestProgram {

/// The content of a test program's window: settings, plan when it is not part of them, outcome and progress,
/// chart, table, as they are measured. Owned by the main presenter. GUI thread; it hears of the run on the
/// run's thread.
///
/// It follows the model by itself. A change of the settings is shown in the results as well: they may be
/// stale then, or show what a test with the new settings would measure. The commands of the table are those
/// of the model (`TestProgramModel::repeatTest`, `continueTest`); one that is off says why.
class KES_EXPORT TestContentPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The model outlives the presenter. The editor is null when the plan is part of the settings; it is
    /// shown below them, and its error below both, where it stays in sight.
    TestContentPresenter(TestProgramModel& model, std::unique_ptr<IPlanEditor> planEditor);
    ~TestContentPresenter() override;

    /// A widget, for `IProgramView::setContent`.
    Kes::IView* getView() override { return _view.get(); }

    /// The user wants to edit the test object. The window for it is the slot's matter.
    sigc::signal<void()>& signalEdit() { return _settings.signalEdit; }

private:
    std::unique_ptr<Kes::IView> _createView();
    void _updateSettings();
    /// Outcome, warnings, chart and table, which belong together.
    void _updateResults();
    /// Also when a run begins or ends: the progress is shown during a run only.
    void _updateProgress();
    /// What can be measured again depends on the run and the devices as well.
    void _updateCommands();

    TestProgramModel& _model;
    std::unique_ptr<IPlanEditor> _planEditor;
    KesMeasure::SettingsView _settings;
    KesMeasure::OutcomeView _outcome;
    KesMeasure::ChartView _chart;
    KesMeasure::ResultTableView _results;
    std::unique_ptr<Kes::IView> _view;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _resultsConnection;
    Kes::ScopedConnection _progressConnection;
    Kes::ScopedConnection _runningConnection;
    Kes::ScopedConnection _canStartConnection;
};

} // namespace KesTestProgram
