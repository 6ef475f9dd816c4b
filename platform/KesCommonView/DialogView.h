#pragma once

#include <KesCommonView/DialogResult.h>
#include <KesCommonView/IView.h>

#include <string>

namespace Kes {

/// The message box for views, which have no presenter to ask. GUI thread.
class KES_EXPORT DialogView {
public:
    /// As `DialogPresenter::show`.
    static DialogResult show(IView* parent, const std::string& text, const std::string& title,
                             DialogResult buttons);
};

} // namespace Kes
