#pragma once

#include "TemplateModel.h"

#include <KesProgram/shell/HardwareControlToolbarPresenter.h>
#include <KesProgram/shell/HelpMenuPresenter.h>
#include <KesProgram/shell/ProgramBasePresenter.h>

/// The main presenter: the window with a help menu and the toolbar that starts and stops the test. GUI
/// thread.
class TemplatePresenter : public KesProgram::ProgramBasePresenter {
public:
    /// The model outlives `signalClosed`.
    explicit TemplatePresenter(TemplateModel& model) : _model(model) {}

    /// Without archive files there is nothing to open.
    void openFile(const std::string&) override {}

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    /// The window is there and not shown yet: menus, toolbars and content are put into it here.
    void _onInit() override;

private:
    TemplateModel& _model;
    /// The window only places the views; they live as long as their presenters do.
    std::unique_ptr<KesProgram::HelpMenuPresenter> _help;
    std::unique_ptr<KesProgram::HardwareControlToolbarPresenter> _control;
    std::unique_ptr<Kes::IView> _content;
};
