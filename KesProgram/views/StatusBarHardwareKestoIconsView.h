#pragma once

#include <KesProgram/views/IStatusBarHardwareKestoIconsView.h>

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// The icons of one device; an icon is there only while what it stands for is on. GUI thread.
class KES_EXPORT StatusBarHardwareKestoIconsView : public Gtk::HBox, public IStatusBarHardwareKestoIconsView {
public:
    StatusBarHardwareKestoIconsView();

    void setAuxDCEnabled(bool enabled) override;

private:
    void _showTextWithoutPicture();

    Gtk::Image _auxDC;
    Gtk::Label _auxDCText; // instead of a picture that cannot be shown
};

} // namespace KesProgram
