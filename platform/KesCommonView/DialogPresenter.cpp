#include <KesCommonView/DialogPresenter.h>

#include <KesCommonView/DialogBackend.h>
#include <KesCommonView/OpenDialogs.h>

namespace Kes {

DialogResult DialogPresenter::show(IView* parent, const std::string& text, const std::string& title,
                                   DialogResult buttons, const std::function<bool()>& isVoid)
{
    // A slot may ask the user. Devices and tests must not stand still until the answer has come.
    const OpenDialogs::Scope dialog;
    return DialogBackend::get().showMessage({parent, text, title, buttons, isVoid});
}

} // namespace Kes
