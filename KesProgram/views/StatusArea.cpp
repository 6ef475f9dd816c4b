#include <KesProgram/views/StatusArea.h>

#include <atkmm/object.h>

namespace KesProgram {

void makeStatusArea(Gtk::Widget& widget)
{
    widget.get_accessible()->set_role(Atk::ROLE_STATUSBAR);
}

} // namespace KesProgram
