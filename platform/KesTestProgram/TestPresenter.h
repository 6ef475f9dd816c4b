#pragma once

#include <KesTestProgram/TestContentPresenter.h>
#include <KesTestProgram/TestModel.h>

#include <KesCommon/Export.h>
#include <KesProgram/shell/ProgramBasePresenter.h>

#include <memory>

namespace KesTestProgram {

/// The main presenter of a test program: the shell's menus and toolbars, and the test as the content. GUI
/// thread.
class KES_EXPORT TestPresenter : public KesProgram::ProgramBasePresenter {
public:
    /// The model outlives `signalClosed`.
    explicit TestPresenter(TestModel& model);
    ~TestPresenter() override;

    void openFile(const std::string& fileName) override;

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    void _onInit() override;
    void _onFinishedFromModel(bool outputStarted) override;

private:
    struct Menus;

    void _createMenus();
    void _createContent();
    void _updateRecentFiles();

    TestModel& _model;
    std::unique_ptr<Menus> _menus;
    std::unique_ptr<TestContentPresenter> _content;
};

} // namespace KesTestProgram
