#pragma once

#include <KesCommonView/IView.h>

namespace Kes {

/// The side of a window or a part of it that knows the model. Owns its view and its child presenters.
class KES_EXPORT IPresenter {
public:
    virtual ~IPresenter();

    /// The view, owned by the presenter; null while there is none yet. GUI thread.
    virtual IView* getView() = 0;
};

} // namespace Kes
