#pragma once

#include <KesCommonView/IView.h>

#include <string>

namespace Kes {

/// Opens help files with the desktop's default application. GUI thread.
class KES_EXPORT HelpView : public IView {
public:
    /// A file that is missing or cannot be opened gives a message box over the parent.
    void show(IView* parent, const std::string& fileName);
};

} // namespace Kes
