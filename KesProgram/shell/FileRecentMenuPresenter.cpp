#include <KesProgram/shell/FileRecentMenuPresenter.h>

#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/shell/ProgramBasePresenter.h>
#include <KesProgram/views/FileRecentMenuView.h>

namespace KesProgram {

FileRecentMenuPresenter::FileRecentMenuPresenter(ProgramBasePresenter* shell)
    : _shell(shell), _view(std::make_unique<FileRecentMenuView>())
{
    _shell->getFileRecentManager()->signalChanged.connect(
        sigc::mem_fun(*this, &FileRecentMenuPresenter::_updateFileCollectionView));
    _view->signalFile.connect(sigc::mem_fun(*this, &FileRecentMenuPresenter::_onFile));
    _updateFileCollectionView();
}

FileRecentMenuPresenter::~FileRecentMenuPresenter() = default;

Kes::IView* FileRecentMenuPresenter::getView()
{
    return _view.get();
}

void FileRecentMenuPresenter::_onFile(const std::string& path)
{
    _shell->runDialogs([&] { _shell->getArchiveManagerPresenter()->open(path); });
}

void FileRecentMenuPresenter::_updateFileCollectionView()
{
    _view->setFileCollection(_shell->getFileRecentManager()->getCollection());
}

} // namespace KesProgram
