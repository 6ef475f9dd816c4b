#pragma once

#include <KesCommonView/SharedSizeGroup.h>
#include <KesProgram/views/IStatusBarHardwareKestoView.h>

#include <gtkmm/box.h>
#include <gtkmm/image.h>
#include <gtkmm/label.h>

namespace KesProgram {

/// One device row: its picture, type, state, icons and a remark. Type, state and icons are columns that line
/// up with those of the other rows in the same hardware area. The row takes the focus as one control; a long
/// remark is broken into lines. GUI thread.
class KES_EXPORT StatusBarHardwareKestoView : public Gtk::HBox, public IStatusBarHardwareKestoView {
public:
    StatusBarHardwareKestoView();

    void setKestoType(const std::string& type) override;
    void setState(Kes::IView* view) override;
    void setIcons(Kes::IView* view) override;
    void setSpokenText(const std::string& text) override;
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
