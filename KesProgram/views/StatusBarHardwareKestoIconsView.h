#pragma once

#include <KesProgram/views/IStatusBarHardwareKestoIconsView.h>

#include <gtkmm/box.h>
#include <gtkmm/image.h>

namespace KesProgram {

/// The icons of one device; an icon is there only while what it stands for is on. GUI thread.
class KES_EXPORT StatusBarHardwareKestoIconsView : public Gtk::HBox, public IStatusBarHardwareKestoIconsView {
public:
    StatusBarHardwareKestoIconsView();

    void setAuxDCEnabled(bool enabled) override;

private:
    Gtk::Image _auxDC;
};

} // namespace KesProgram
