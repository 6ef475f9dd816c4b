#include <KesProgram/views/detail/StatusArea.h>

#include <atkmm/object.h>

namespace KesProgram {

void makeStatusArea(Gtk::Widget& widget)
{
    const auto accessible = widget.get_accessible();
    accessible->set_role(Atk::ROLE_PANEL);
    // The first name that an object gets is not announced; every later one is.
    accessible->set_name("");
}

} // namespace KesProgram
