#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <string>
#include <vector>

namespace KesProgram {

/// The list of recent files as a menu. It neither keeps nor orders the files: that is the matter of
/// `FileRecentManager`. GUI thread.
class KES_EXPORT IFileRecentMenuView : public Kes::IView {
public:
    /// The user chose a file; carries its path, byte for byte as it was given. A slot may set a new list.
    sigc::signal<void(const std::string&)> signalFile;

    /// Shows the paths, the last one on top, in place of those shown so far. Whether there is a file at a
    /// path is not looked at.
    virtual void setFileCollection(const std::vector<std::string>& paths) = 0;
};

} // namespace KesProgram
