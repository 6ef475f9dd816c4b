#include <KesProgram/archive/ArchiveManagerPresenter.h>

#include <KesCommon/StringHelper.h>
#include <KesCommonView/DialogPresenter.h>
#include <KesCommonView/FileDialogPresenter.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/DataFormatError.h>
#include <KesProgram/text/FileManagerLocalization.h>

namespace KesProgram {

namespace Text = FileManagerLocalization;

namespace {

std::string withPath(const char* format, const std::string& path)
{
    return Kes::StringHelper::formatC<const char*>(format, path.c_str());
}

std::pair<std::string, std::string> filter(const char* label, const std::string& extension)
{
    const std::string pattern = "*." + extension;
    return {pattern, label + (" (" + pattern + ")")};
}

bool isDataError(const Kes::Result& result)
{
    return dynamic_cast<const DataFormatError*>(result.getError().get()) != nullptr;
}

} // namespace

ArchiveManagerPresenter::ArchiveManagerPresenter(ArchiveManager* manager, Kes::IPresenter* parent,
                                                 const std::string& extension,
                                                 const std::string& supportedExtension)
    : _manager(manager), _parent(parent), _extension(extension), _supportedExtension(supportedExtension)
{}

ArchiveManagerPresenter::~ArchiveManagerPresenter() = default;

std::string ArchiveManagerPresenter::getDisplayFileName()
{
    return _manager->isNew() ? "[New]." + _extension : _manager->getFileName();
}

void ArchiveManagerPresenter::setIsEnableRepairMode(bool enable)
{
    _isEnableRepairMode = enable;
}

bool ArchiveManagerPresenter::getIsEnableRepairMode() const
{
    return _isEnableRepairMode;
}

void ArchiveManagerPresenter::create(const std::string& name)
{
    if (close())
        _manager->create(name);
}

void ArchiveManagerPresenter::open(const std::string& fileName)
{
    // A copy: the name may belong to a list that changes when the file becomes the current one.
    const std::string path = fileName;
    if (close())
        replace(path);
}

void ArchiveManagerPresenter::replace(const std::string& fileName)
{
    std::string path = fileName;
    if (path.empty())
        path =
            Kes::FileDialogPresenter().show(_getParentView(), Text::title(), _getOpenExtensionMap(), false);
    if (path.empty())
        return;
    if (!_tryOpen(path))
        _manager->create("");
}

bool ArchiveManagerPresenter::_tryOpen(const std::string& path)
{
    const auto result = _manager->open(path, false);
    if (result)
        return true;
    if (!isDataError(result))
        _showFileAccessErrorDialog(path);
    else if (!_isEnableRepairMode)
        _showFileInvalidDataErrorDialog(path);
    else
        return _tryRepair(path);
    return false;
}

bool ArchiveManagerPresenter::_tryRepair(const std::string& path)
{
    const auto answer =
        Kes::DialogPresenter::show(_getParentView(), withPath(Text::tryOpenAtRepairMode(), path),
                                   Text::title(), Kes::DialogResult::YesNo);
    if (answer != Kes::DialogResult::Yes)
        return false;
    const auto result = _manager->open(path, true);
    if (result)
        _showFileDataSuccessRepairedDialog(path);
    else if (isDataError(result))
        _showFileInvalidDataErrorDialog(path);
    else
        _showFileAccessErrorDialog(path);
    return result;
}

bool ArchiveManagerPresenter::restore(std::istream& data, const std::string& fileName, bool isFileNewer)
{
    if (_manager->restore(data, fileName, isFileNewer))
        return true;
    _showFileInvalidDataErrorDialog(fileName.empty() ? getDisplayFileName() : fileName);
    _manager->create("");
    return false;
}

void ArchiveManagerPresenter::save()
{
    if (_manager->isNew())
        saveAs();
    else
        _saveTo(_manager->getFileName());
}

void ArchiveManagerPresenter::saveAs()
{
    const auto path =
        Kes::FileDialogPresenter().show(_getParentView(), Text::title(), _getSaveExtensionMap(), true);
    if (!path.empty())
        _saveTo(path);
}

void ArchiveManagerPresenter::_saveTo(const std::string& path)
{
    if (path == _manager->getFileName() && _manager->isFileReplaced() && !_confirmOverwriting(path))
        return;
    if (!_manager->saveAs(path))
        _showSaveErrorDialog(_manager->getFileName());
}

bool ArchiveManagerPresenter::_confirmOverwriting(const std::string& path)
{
    return Kes::DialogPresenter::show(_getParentView(), withPath(Text::fileReplaced(), path), Text::title(),
                                      Kes::DialogResult::YesNo) == Kes::DialogResult::Yes;
}

bool ArchiveManagerPresenter::close()
{
    if (!_manager->isFileChanged()) {
        _manager->release(false);
        return true;
    }
    const auto answer =
        Kes::DialogPresenter::show(_getParentView(), withPath(Text::saveDialog(), getDisplayFileName()),
                                   Text::title(), Kes::DialogResult::YesNoCancel);
    if (answer == Kes::DialogResult::Yes)
        saveAs();
    if (answer != Kes::DialogResult::Cancel)
        _manager->release(answer == Kes::DialogResult::Yes && _manager->isFileChanged());
    return answer != Kes::DialogResult::Cancel;
}

Kes::IView* ArchiveManagerPresenter::_getParentView()
{
    return _parent ? _parent->getView() : nullptr;
}

ArchiveManagerPresenter::Filters ArchiveManagerPresenter::_getSaveExtensionMap()
{
    return {filter(Text::archiveFile(), _extension)};
}

ArchiveManagerPresenter::Filters ArchiveManagerPresenter::_getOpenExtensionMap()
{
    auto filters = _getSaveExtensionMap();
    if (!_supportedExtension.empty())
        filters.push_back(filter(Text::supportedFile(), _supportedExtension));
    return filters;
}

void ArchiveManagerPresenter::_showInfoDialog(const char* format, const std::string& path)
{
    Kes::DialogPresenter::show(_getParentView(), withPath(format, path), Text::title(),
                               Kes::DialogResult::Ok);
}

void ArchiveManagerPresenter::_showSaveErrorDialog(const std::string& path)
{
    _showInfoDialog(Text::saveError(), path);
}

void ArchiveManagerPresenter::_showFileAccessErrorDialog(const std::string& path)
{
    _showInfoDialog(Text::accessError(), path);
}

void ArchiveManagerPresenter::_showFileInvalidDataErrorDialog(const std::string& path)
{
    _showInfoDialog(Text::fileInvalidData(), path);
}

void ArchiveManagerPresenter::_showFileDataSuccessRepairedDialog(const std::string& path)
{
    _showInfoDialog(Text::fileDataSuccessRepaired(), path);
}

} // namespace KesProgram
