#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <istream>
#include <string>
#include <utility>
#include <vector>

namespace KesProgram {

class ArchiveManager;

/// The file commands of a program with their questions, file dialogs and messages, on top of the model's
/// `ArchiveManager`. Owned by the base presenter. Every operation returns when its last dialog has been
/// closed; a failure ends in a message with the path. GUI thread.
class KES_EXPORT ArchiveManagerPresenter {
public:
    /// The manager and the parent must outlive the presenter; the parent, which may be null, gives the view
    /// over which dialogs are shown. `extension`: that of the program's files, without a dot;
    /// `supportedExtension`: a further one that can be opened, or empty.
    ArchiveManagerPresenter(ArchiveManager* manager, Kes::IPresenter* parent, const std::string& extension,
                            const std::string& supportedExtension);
    ~ArchiveManagerPresenter();
    ArchiveManagerPresenter(const ArchiveManagerPresenter&) = delete;
    ArchiveManagerPresenter& operator=(const ArchiveManagerPresenter&) = delete;

    /// The path of the current file; "[New]." and the extension for a new one.
    std::string getDisplayFileName();

    /// Whether the user may choose to have bad data repaired; true at first.
    void setIsEnableRepairMode(bool enable);
    bool getIsEnableRepairMode() const;

    /// Begins a new document, unless the user wants to keep the present one.
    void create(const std::string& name);

    /// Opens a file, or the one chosen in a dialog when the name is empty, unless the user wants to keep
    /// the present document. After a failure the program has a new, empty document.
    void open(const std::string& fileName);

    /// As `open`, but the present document is given up unasked: for one that has never been touched.
    void replace(const std::string& fileName);

    /// Loads data that is in no file, in place of the present document, which is given up unasked; see
    /// `ArchiveManager::restore`. False after a message: the program then has a new, empty document.
    bool restore(std::istream& data, const std::string& fileName, bool isFileNewer);

    /// Saves the current file; a new one as `saveAs` does. Asks first when somebody else has written or
    /// replaced the file meanwhile.
    void save();

    /// Saves under the path chosen in a dialog. The message of a failure names the path before it.
    void saveAs();

    /// Asks about unsaved changes. False when the user cancels; true when the document may be replaced,
    /// also after a `saveAs` that was cancelled or failed.
    bool close();

protected:
    using Filters = std::vector<std::pair<std::string, std::string>>;

    /// The view over which dialogs are shown; null without a parent.
    Kes::IView* _getParentView();

    /// The filters of the file dialogs: pattern and label.
    Filters _getSaveExtensionMap();
    Filters _getOpenExtensionMap();

    /// A message box; the format gets the path for its "%s".
    void _showInfoDialog(const char* format, const std::string& path);
    void _showSaveErrorDialog(const std::string& path);
    void _showFileAccessErrorDialog(const std::string& path);
    void _showFileInvalidDataErrorDialog(const std::string& path);
    void _showFileDataSuccessRepairedDialog(const std::string& path);

private:
    bool _tryOpen(const std::string& path);
    bool _tryRepair(const std::string& path);
    void _saveTo(const std::string& path);
    bool _confirmOverwriting(const std::string& path);

    ArchiveManager* _manager;
    Kes::IPresenter* _parent;
    std::string _extension;
    std::string _supportedExtension;
    bool _isEnableRepairMode = true;
};

} // namespace KesProgram
