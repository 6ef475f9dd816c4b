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
class KES_EXPORT TestContentPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The model outlives the presenter. The editor is null when the plan is part of the settings.
    TestContentPresenter(TestProgramModel& model, std::unique_ptr<IPlanEditor> planEditor);
    ~TestContentPresenter() override;

    Kes::IView* getView() override { return _view.get(); }

    /// The user wants to edit the test object.
    sigc::signal<void()>& signalEdit() { return _settings.signalEdit; }

private:
    std::unique_ptr<Kes::IView> _createView();
    void _updateSettings();
    void _updateResults();
    void _updateProgress();
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
