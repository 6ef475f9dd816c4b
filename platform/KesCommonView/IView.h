#pragma once

#include <KesCommon/Export.h>

namespace Kes {

/// What a presenter shows. A view that can be placed in a window is also a `Gtk::Widget`, which is found
/// out by `dynamic_cast`. Owned by its presenter. GUI thread.
class KES_EXPORT IView {
public:
    virtual ~IView();
};

} // namespace Kes
