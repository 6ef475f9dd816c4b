#pragma once

#include <gtkmm/scrolledwindow.h>

namespace KesProgram {

/// Scrolls rows that lie below each other, so that many of them do not make the window larger. Its height is
/// counted in lines of its font and so follows the zoom; a row that gets the focus is scrolled into view.
/// GUI thread.
class RowsArea : public Gtk::ScrolledWindow {
public:
    RowsArea();

protected:
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;
    void get_preferred_height_for_width_vfunc(int width, int& minimum, int& natural) const override;

private:
    int _getMost(int all) const;
};

} // namespace KesProgram
