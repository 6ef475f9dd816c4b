#pragma once

#include "PulseModel.h"
#include "TimeView.h"

#include <KesCommonView/UpdateViewGuard.h>
#include <KesProgram/shell/FileMenuPresenter.h>
#include <KesProgram/shell/HardwareControlToolbarPresenter.h>
#include <KesProgram/shell/HelpMenuPresenter.h>
#include <KesProgram/shell/ProgramBasePresenter.h>

//! [class]
/// The window: file and help menus, Start and Stop, and the measured time.
class PulsePresenter : public KesProgram::ProgramBasePresenter {
public:
    explicit PulsePresenter(PulseModel& model) : _model(model) {}

    void openFile(const std::string& fileName) override;

protected:
    KesProgram::ProgramModel* _getModel() override { return &_model; }
    void _onInit() override;

private:
    void _showTime();

    PulseModel& _model;
    std::unique_ptr<KesProgram::FileMenuPresenter> _file;
    std::unique_ptr<KesProgram::HelpMenuPresenter> _help;
    std::unique_ptr<KesProgram::HardwareControlToolbarPresenter> _control;
    std::unique_ptr<TimeView> _content;
    Kes::UpdateViewGuard _guard;
    Kes::ScopedConnection _timeConnection;
};
//! [class]
