#pragma once

#include <KesCommonView/SharedSizeGroup.h>
#include <KesProgram/views/IStatusBarHardwareKestoView.h>

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// One device row: its picture, type, state and icons. The last three are columns that line up with those
/// of the other rows in the same hardware area. GUI thread.
class KES_EXPORT StatusBarHardwareKestoView : public Gtk::HBox, public IStatusBarHardwareKestoView {
public:
    StatusBarHardwareKestoView();

    void setKestoType(const std::string& type) override;
    void setState(Kes::IView* view) override;
    void setIcons(Kes::IView* view) override;

private:
    void _showPicture();

    Gtk::Image _picture;
    Kes::SharedSizeGroup _typeColumn;
    Kes::SharedSizeGroup _stateColumn;
    Kes::SharedSizeGroup _iconsColumn;
    Gtk::Label _type;
};

} // namespace KesProgram
