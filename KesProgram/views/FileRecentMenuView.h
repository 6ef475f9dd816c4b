#pragma once

#include <KesProgram/views/IFileRecentMenuView.h>
#include <KesProgram/views/MenuKeeper.h>

#include <gtkmm/menu.h>

namespace KesProgram {

/// The recent files as a menu, which a program hangs below an item of its own; empty at first. A path of more
/// than 60 characters is shortened in the middle, and its tooltip has it whole. Paths that would then look
/// alike are not shortened. GUI thread.
///
/// A path that is not UTF-8 is shown with replacement characters; choosing it still gives its own bytes.
class KES_EXPORT FileRecentMenuView : private MenuKeeper, public Gtk::Menu, public IFileRecentMenuView {
public:
    FileRecentMenuView();

    void setFileCollection(const std::vector<std::string>& paths) override;

private:
    void _addFile(const std::string& path, bool isAlone);
};

} // namespace KesProgram
