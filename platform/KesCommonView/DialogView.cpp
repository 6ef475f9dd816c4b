#include <KesCommonView/DialogView.h>

#include <KesCommonView/DialogPresenter.h>

namespace Kes {

DialogResult DialogView::show(IView* parent, const std::string& text, const std::string& title,
                              DialogResult buttons)
{
    return DialogPresenter::show(parent, text, title, buttons);
}

} // namespace Kes
