#pragma once

#include <KesCommon/Export.h>

#include <gtkmm/box.h>

namespace Kes {

/// Reserves space for content added later: a box whose natural size is so many characters wide and lines
/// high. It still shrinks to what its present content needs, and grows with a larger one. For texts that
/// come and go, such as messages, so that what stands around them stays in its place; not for content that
/// is always there. GUI thread.
class KES_EXPORT RoomyBox : public Gtk::Box {
public:
    /// `spacing` in pixels; `characters` of the average width and `lines` of the widget's own font, so both
    /// follow the zoom. 0: as the content needs.
    RoomyBox(Gtk::Orientation orientation, int spacing, int characters, int lines = 0);

protected:
    void get_preferred_width_vfunc(int& minimum, int& natural) const override;
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;
    void get_preferred_height_for_width_vfunc(int width, int& minimum, int& natural) const override;

private:
    Pango::FontMetrics _getMetrics() const;
    int _getRoomyHeight() const;

    int _characters;
    int _lines;
};

} // namespace Kes
