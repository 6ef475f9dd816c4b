#pragma once

#include <KesCommon/Export.h>

#include <gtkmm/image.h>

#include <string>

namespace Kes {

/// A picture of the icon theme that follows the zoom of the screen, as texts do; GTK's own do not. A name
/// that the theme does not know shows GTK's sign of a missing picture, an empty one nothing. It has no
/// accessible name: a text beside it has to say the same. GUI thread.
class KES_EXPORT ZoomedIcon : public Gtk::Image {
public:
    /// The size is in pixels at a zoom of 100 %, of a square; see `KesView::StyleZoomHelper`.
    explicit ZoomedIcon(const std::string& icon = {}, int size = 16);

    /// The size stays. The name is one of the theme, such as "dialog-warning-symbolic", not a path.
    void setIcon(const std::string& icon);

    /// Whether the theme has a picture of the name that can be read: its file may be damaged, or nothing
    /// there that reads its format, of which the log gets a warning.
    static bool canShow(const std::string& icon);

private:
    void _resize();

    int _size;
};

} // namespace Kes
