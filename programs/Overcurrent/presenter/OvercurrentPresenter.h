#pragma once

#include <Overcurrent/model/OvercurrentModel.h>
#include <Overcurrent/presenter/ContentPresenter.h>

#include <KesProgram/shell/ProgramBasePresenter.h>

#include <memory>

namespace Overcurrent {

/// The main presenter of the program. GUI thread.
class OvercurrentPresenter : public KesProgram::ProgramBasePresenter {
public:
    /// The model outlives `signalClosed`.
    explicit OvercurrentPresenter(OvercurrentModel& model);
    ~OvercurrentPresenter() override;

    void openFile(const std::string& fileName) override;
    void saveArchive() override;
    void saveAsArchive() override;

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    void _onInit() override;
    void _onFinishedFromModel(bool outputStarted) override;

private:
    struct Menus;

    void _createMenus();
    void _createContent();
    void _updateRecentFiles();
    bool _confirmSavedPlan();
    bool _ask(const std::string& question);

    OvercurrentModel& _model;
    std::unique_ptr<Menus> _menus;
    std::unique_ptr<ContentPresenter> _content;
};

} // namespace Overcurrent
