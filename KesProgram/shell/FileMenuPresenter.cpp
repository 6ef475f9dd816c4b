#include <KesProgram/shell/FileMenuPresenter.h>

#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/views/FileMenuView.h>

namespace KesProgram {

FileMenuPresenter::FileMenuPresenter(ProgramBasePresenter* shell)
    : _view(std::make_unique<FileMenuView>()),
      _hardwareIsRunning([this](bool running) { _onHardwareIsRunningChanged(running); })
{
    _view->signalNew.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::createArchive));
    _view->signalOpen.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::openArchive));
    _view->signalSave.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::saveArchive));
    _view->signalSaveAs.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::saveAsArchive));
}

FileMenuPresenter::~FileMenuPresenter() = default;

Kes::IView* FileMenuPresenter::getView()
{
    return _view.get();
}

void FileMenuPresenter::_onHardwareIsRunningChanged(bool running)
{
    _view->setEnabledNew(!running);
    _view->setEnabledOpen(!running);
}

} // namespace KesProgram
