#pragma once

#include <KesCommonView/DialogResult.h>
#include <KesCommonView/IView.h>

#include <string>

namespace Kes {

/// Message boxes and questions, modal over the parent's window. GUI thread.
class KES_EXPORT DialogPresenter {
public:
    /// Returns when the box has been closed: the pressed button, or the declining answer
    /// (`decliningAnswer`) when it was closed in another way. An empty title shows the program's name.
    static DialogResult show(IView* parent, const std::string& text, const std::string& title,
                             DialogResult buttons);
};

} // namespace Kes
