#include <KesCommonView/AboutView.h>

#include <KesCommonView/detail/CommonViewText.h>
#include <KesCommonView/detail/WindowIcons.h>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/stack.h>

namespace Kes {

namespace {

constexpr int logoSize = 64;

/// The dialog keeps the height of pages that it does not have.
void giveUpHiddenPages(Gtk::Container& container)
{
    for (auto* child : container.get_children()) {
        if (auto* stack = dynamic_cast<Gtk::Stack*>(child))
            stack->property_height_request() = -1;
        else if (auto* inner = dynamic_cast<Gtk::Container*>(child))
            giveUpHiddenPages(*inner);
    }
}

} // namespace

AboutView::AboutView()
{
    set_icon_list(getWindowIcons());
    if (const auto& icons = getWindowIcons(); !icons.empty())
        set_logo(icons.back()->scale_simple(logoSize, logoSize, Gdk::INTERP_BILINEAR));
    // GTK's own caption follows the locale, which may be another language than the program's.
    if (auto* close = dynamic_cast<Gtk::Button*>(get_widget_for_response(Gtk::RESPONSE_DELETE_EVENT))) {
        close->set_use_underline(true);
        close->set_label(lng::CommonView::get("Button.close"));
    }
    giveUpHiddenPages(*get_content_area());
    _setTitle();
    signal_response().connect([this](int) { hide(); });
}

AboutView::~AboutView() = default;

void AboutView::setProgramName(const std::string& name)
{
    set_program_name(name);
    _setTitle();
}

void AboutView::setVersion(const std::string& version)
{
    gtk_about_dialog_set_version(gobj(), version.empty() ? nullptr : version.c_str());
    _setTitle();
}

void AboutView::_setTitle()
{
    set_title(lng::CommonView::get("About.title"));
}

} // namespace Kes
