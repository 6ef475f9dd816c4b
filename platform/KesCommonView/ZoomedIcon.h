#pragma once

#include <KesCommon/Export.h>

#include <gtkmm/image.h>

#include <string>

namespace Kes {

/// A picture of the icon theme that follows the zoom of the screen, as texts do; GTK's own do not. GUI
/// thread.
class KES_EXPORT ZoomedIcon : public Gtk::Image {
public:
    /// The size is in pixels at a zoom of 100 %.
    explicit ZoomedIcon(const std::string& icon = {}, int size = 16);

    void setIcon(const std::string& icon);

private:
    void _resize();

    int _size;
};

} // namespace Kes
