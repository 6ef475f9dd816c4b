#pragma once

#include <KesCommonView/IView.h>

#include <string>
#include <utility>
#include <vector>

namespace Kes {

/// Asks the user for one file. Made on the stack for each question. GUI thread.
class KES_EXPORT FileDialogPresenter {
public:
    /// Returns the path as the file system has it, in UTF-8 or any other bytes, empty when the user
    /// cancelled. Each filter is a pattern such as "*.abc" and its label. In save mode a name without an
    /// extension gets that of the chosen filter, and an existing file is replaced only after a question;
    /// `suggestion` is the path that is offered (empty: none). It is up to the backend how, see
    /// `DialogBackend`.
    std::string show(IView* parent, const std::string& title,
                     const std::vector<std::pair<std::string, std::string>>& filters, bool save,
                     const std::string& suggestion = {});
};

} // namespace Kes
