#pragma once

#include <KesCommonView/DialogResult.h>
#include <KesCommonView/IView.h>

#include <functional>
#include <string>

namespace Kes {

/// Message boxes and questions, modal over the parent's window. GUI thread.
class KES_EXPORT DialogPresenter {
public:
    /// Returns when the box has been closed: the pressed button, or the declining answer
    /// (`decliningAnswer`) when it was closed in another way. An empty title shows the program's name. A
    /// question closes by itself as soon as `isVoid`, which is called repeatedly, returns true.
    static DialogResult show(IView* parent, const std::string& text, const std::string& title,
                             DialogResult buttons, const std::function<bool()>& isVoid = {});
};

} // namespace Kes
