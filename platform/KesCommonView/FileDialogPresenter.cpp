#include <KesCommonView/FileDialogPresenter.h>

#include <KesCommonView/DialogBackend.h>
#include <KesCommonView/OpenDialogs.h>

namespace Kes {

std::string FileDialogPresenter::show(IView* parent, const std::string& title,
                                      const std::vector<std::pair<std::string, std::string>>& filters,
                                      bool save, const std::string& suggestion)
{
    // As for a message box: nobody else waits for the user.
    const OpenDialogs::Scope dialog;
    return DialogBackend::get().chooseFile({parent, title, filters, save, suggestion});
}

} // namespace Kes
