#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/window.h>

namespace Kes {

/// The base of all top-level windows of the family, with the family's icon. GUI thread.
class KES_EXPORT Window : public Gtk::Window {
public:
    Window();
    ~Window() override;
};

} // namespace Kes
