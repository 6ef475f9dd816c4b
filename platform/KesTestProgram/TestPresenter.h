#pragma once

#include <KesTestProgram/TestContentPresenter.h>
#include <KesTestProgram/TestProgramModel.h>

#include <KesCommon/Export.h>
#include <KesProgram/shell/ProgramBasePresenter.h>

#include <memory>
#include <optional>

namespace KesTestProgram {

/// The main presenter of a test program: the shell's menus and toolbars, and the test as the content. GUI
/// thread.
///
/// Toolbars and content are made when the window has been drawn once, so that it is there early.
class KES_EXPORT TestPresenter : public KesProgram::ProgramBasePresenter {
public:
    /// The model outlives `signalClosed`. It gets its questions to the user from here
    /// (`TestProgramModel::confirmReplacing`, `chooseStart`), as long as the presenter lives.
    explicit TestPresenter(TestProgramModel& model);
    ~TestPresenter() override;

    /// Asks nothing about a document that nobody has touched.
    void openFile(const std::string& fileName) override;
    /// Asks first when what the user is writing is no plan: the last valid one is saved then.
    void saveArchive() override;
    void saveAsArchive() override;
    /// The user chooses name, place and kind of the report; a former one is not offered again. PDF is made on
    /// a thread while a box with a button to cancel is shown.
    void requestReport() override;

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    void _onInit() override;
    void _onFinishedFromModel(bool outputStarted) override;
    /// The editor of a plan beside the test object; null: there is none.
    virtual std::unique_ptr<IPlanEditor> _createPlanEditor();

private:
    struct Menus;
    struct Toolbars;

    void _createMenus();
    void _fill();
    void _createToolbars();
    void _updateRecentFiles();
    bool _confirmSavedPlan();
    bool _ask(const std::string& question);
    Kes::Result _writeReport(const std::string& path);
    /// Continue the last test, or begin a new one; nothing: neither.
    std::optional<RunKind> _chooseStart();
    /// Beside the archive and named after it, or else in the folder of the reports.
    std::string _suggestReport();

    TestProgramModel& _model;
    std::unique_ptr<Menus> _menus;
    std::unique_ptr<Toolbars> _toolbars;
    std::unique_ptr<TestContentPresenter> _content;
};

} // namespace KesTestProgram
