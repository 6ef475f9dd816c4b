#include <KesProgram/shell/FileToolbarPresenter.h>

#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/views/FileToolbarView.h>

namespace KesProgram {

FileToolbarPresenter::FileToolbarPresenter(ProgramBasePresenter* shell)
    : _view(std::make_unique<FileToolbarView>()),
      _hardwareIsRunning([this](bool running) { _onHardwareIsRunningChanged(running); })
{
    _view->signalNew.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::createArchive));
    _view->signalOpen.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::openArchive));
    // Deliberately not `saveArchive`: the button always asks for a name.
    _view->signalSave.connect(sigc::mem_fun(*shell, &ProgramBasePresenter::saveAsArchive));
}

FileToolbarPresenter::~FileToolbarPresenter() = default;

Kes::IView* FileToolbarPresenter::getView()
{
    return _view.get();
}

void FileToolbarPresenter::_onHardwareIsRunningChanged(bool running)
{
    _view->setEnabledNew(!running);
    _view->setEnabledOpen(!running);
}

} // namespace KesProgram
