#include <KesCommonView/DialogPresenter.h>

#include <KesCommon/SignalGate.h>
#include <KesCommonView/DialogBackend.h>

namespace Kes {

DialogResult DialogPresenter::show(IView* parent, const std::string& text, const std::string& title,
                                   DialogResult buttons)
{
    // A slot may ask the user. Devices and tests must not stand still until the answer has come.
    SignalGate::Release release;
    return DialogBackend::get().showMessage({parent, text, title, buttons});
}

} // namespace Kes
