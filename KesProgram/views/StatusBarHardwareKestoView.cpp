#include <KesProgram/views/StatusBarHardwareKestoView.h>

#include <KesCommonView/FirstFrame.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/StyleZoomHelper.h>
#include <KesProgram/views/SharedKestoPixbuf.h>

#include <atkmm/object.h>

namespace KesProgram {

namespace {

constexpr int pictureSize = 16; // pixels
constexpr int remarkWidth = 32; // characters

void replaceContent(Kes::SharedSizeGroup& column, Kes::IView* view)
{
    Kes::GtkWidgetHelper::removeChildren(column);
    if (auto* widget = dynamic_cast<Gtk::Widget*>(view))
        column.add(*widget);
}

} // namespace

StatusBarHardwareKestoView::StatusBarHardwareKestoView()
    : Gtk::HBox(false, 0), _typeColumn("ssgType"), _stateColumn("ssgState"), _iconsColumn("ssgIcons")
{
    get_style_context()->add_class("innerContentMargin");
    get_style_context()->add_class("deviceRow");
    set_can_focus(true);
    get_accessible()->set_role(Atk::ROLE_LIST_ITEM);
    // The room of the picture that comes.
    _picture.set_size_request(pictureSize, pictureSize);
    Kes::FirstFrame::call(sigc::mem_fun(*this, &StatusBarHardwareKestoView::_showPicture));
    KesView::StyleZoomHelper::signalZoomed().connect(
        sigc::mem_fun(*this, &StatusBarHardwareKestoView::_showPicture));
    _picture.get_style_context()->add_class("icon");
    _picture.get_style_context()->add_class("innerContentMargin");
    _type.get_style_context()->add_class("blockMargin");
    _type.set_hexpand(false);
    _type.set_halign(Gtk::ALIGN_START);
    _typeColumn.add(_type);
    _remark.get_style_context()->add_class("deviceRemark");
    _remark.set_line_wrap(true);
    _remark.set_max_width_chars(remarkWidth);
    _remark.set_xalign(0);
    _remark.set_no_show_all(true);

    pack_start(_picture, Gtk::PACK_SHRINK);
    for (auto* column : {&_typeColumn, &_stateColumn, &_iconsColumn})
        pack_start(*column, Gtk::PACK_SHRINK);
    pack_start(_remark, Gtk::PACK_SHRINK);
}

void StatusBarHardwareKestoView::_showPicture()
{
    _picture.set_size_request(-1, -1);
    _picture.set(getZoomedKestoPixbuf());
}

void StatusBarHardwareKestoView::setKestoType(const std::string& type)
{
    _type.set_text(Glib::ustring(type).make_valid());
}

void StatusBarHardwareKestoView::setState(Kes::IView* view)
{
    replaceContent(_stateColumn, view);
}

void StatusBarHardwareKestoView::setIcons(Kes::IView* view)
{
    replaceContent(_iconsColumn, view);
}

void StatusBarHardwareKestoView::setSpokenText(const std::string& text)
{
    Kes::GtkWidgetHelper::setAccessibleName(*this, Glib::ustring(text).make_valid());
}

void StatusBarHardwareKestoView::setRemark(const std::string& text)
{
    _remark.set_text(Glib::ustring(text).make_valid());
    _remark.set_visible(!text.empty());
}

} // namespace KesProgram
