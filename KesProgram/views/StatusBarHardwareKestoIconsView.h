#pragma once

#include <KesProgram/views/IStatusBarHardwareKestoIconsView.h>

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// The icons of one device; an icon is there only while what it stands for is on. None is at first, and one
/// that is off takes no room. GUI thread.
///
/// Beside an icon whose picture cannot be shown stands its text: an empty place would mean that the supply is
/// off.
class KES_EXPORT StatusBarHardwareKestoIconsView : public Gtk::HBox, public IStatusBarHardwareKestoIconsView {
public:
    StatusBarHardwareKestoIconsView();

    /// The icon of the auxiliary supply; its tooltip says in words that it is on. The same value again
    /// changes nothing.
    void setAuxDCEnabled(bool enabled) override;

private:
    void _showTextWithoutPicture();

    Gtk::Image _auxDC;
    Gtk::Label _auxDCText; // instead of a picture that cannot be shown
};

} // namespace KesProgram
