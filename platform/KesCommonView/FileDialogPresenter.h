#pragma once

#include <KesCommonView/IView.h>

#include <string>
#include <utility>
#include <vector>

namespace Kes {

/// Asks the user for one file. Made on the stack for each question. GUI thread.
class KES_EXPORT FileDialogPresenter {
public:
    /// Returns the chosen path in UTF-8, empty when the user cancelled. In save mode a name without an
    /// extension gets that of the chosen filter, and an existing file is replaced only after a question;
    /// `suggestion` is the path that is offered (empty: none).
    std::string show(IView* parent, const std::string& title,
                     const std::vector<std::pair<std::string, std::string>>& filters, bool save,
                     const std::string& suggestion = {});
};

} // namespace Kes
