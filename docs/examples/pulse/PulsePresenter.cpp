#include "PulsePresenter.h"

#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/shell/ProgramMainMenuPresenter.h>
#include <KesProgram/views/IProgramView.h>

//! [init]
void PulsePresenter::_onInit()
{
    _file = std::make_unique<KesProgram::FileMenuPresenter>(this);
    _help = std::make_unique<KesProgram::HelpMenuPresenter>(this, _model);
    _control = std::make_unique<KesProgram::HardwareControlToolbarPresenter>(_model);
    _content = std::make_unique<TimeView>();
    _getMenuBar()->addMenu(_file->getView());
    _getMenuBar()->addMenu(_help->getView());
    _getMenuBar()->addToolbar(_control->getView());
    _getProgramView()->setContent(*_content);
    _timeConnection =
        _model.signalTimeChanged.connect([this] { _guard.safeUpdateView([this] { _showTime(); }); });
    _showTime();
}

void PulsePresenter::_showTime()
{
    _content->setTime(_model.getTime());
}
//! [init]

//! [open]
void PulsePresenter::openFile(const std::string& fileName)
{
    runDialogs([&] {
        if (_model.getTime())
            getArchiveManagerPresenter()->open(fileName);
        else
            getArchiveManagerPresenter()->replace(fileName);
    });
}
//! [open]
