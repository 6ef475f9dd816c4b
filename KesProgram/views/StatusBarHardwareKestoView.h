#pragma once

#include <KesCommonView/SharedSizeGroup.h>
#include <KesProgram/views/IStatusBarHardwareKestoView.h>

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// One device row: its picture, type, state, icons and a remark. The row takes the focus as one control; a
/// long remark is broken into lines. GUI thread.
///
/// Type, state and icons are columns that line up with those of the other rows, when the row lies somewhere
/// below a `Kes::SharedSizeGroupOwner` such as the hardware area. The picture comes after the first frame of
/// the window, into room that is kept for it, and follows the zoom.
class KES_EXPORT StatusBarHardwareKestoView : public Gtk::HBox, public IStatusBarHardwareKestoView {
public:
    StatusBarHardwareKestoView();

    void setKestoType(const std::string& type) override;
    /// The view stays its owner's. It takes the place of the former one, which is taken out and not
    /// destroyed.
    void setState(Kes::IView* view) override;
    void setIcons(Kes::IView* view) override;
    void setSpokenText(const std::string& text) override;
    /// An empty remark takes no room.
    void setRemark(const std::string& text) override;

private:
    void _showPicture();

    Gtk::Image _picture;
    Kes::SharedSizeGroup _typeColumn;
    Kes::SharedSizeGroup _stateColumn;
    Kes::SharedSizeGroup _iconsColumn;
    Gtk::Label _type;
    Gtk::Label _remark;
};

} // namespace KesProgram
