#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IPresenter.h>

#include <sigc++/sigc++.h>

#include <memory>
#include <string>

namespace KesProgram {

class IFileRecentMenuView;
class ProgramBasePresenter;

/// The menu of the recent files, the newest on top. A chosen file is opened with the questions of the archive
/// commands; one that cannot be opened ends in a message. Made and owned by the program, after the model has
/// been initialised. GUI thread.
///
/// Only for a program with archive logic (`ProgramModel::hasArchiveLogic`). The menu follows the list by
/// itself.
class KES_EXPORT FileRecentMenuPresenter : public Kes::IPresenter, public sigc::trackable {
public:
    /// The shell and its model outlive the presenter.
    explicit FileRecentMenuPresenter(ProgramBasePresenter* shell);
    ~FileRecentMenuPresenter() override;

    /// A `Gtk::Menu`, which no menu bar takes: the program makes it the submenu of an item of its own.
    Kes::IView* getView() override;

private:
    void _onFile(const std::string& path);
    void _updateFileCollectionView();

    ProgramBasePresenter* _shell;
    std::unique_ptr<IFileRecentMenuView> _view;
};

} // namespace KesProgram
