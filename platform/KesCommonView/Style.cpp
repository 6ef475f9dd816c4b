#include <KesCommonView/Style.h>

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>

#include <gdkmm/screen.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/csssection.h>
#include <gtkmm/stylecontext.h>

#include <set>

namespace KesView {

namespace {

void warn(const std::string& name, const std::string& reason)
{
    KesLog::Log::writeWarn("Style sheet " + name + ": " + reason);
}

void load(const std::string& name)
{
    const auto screen = Gdk::Screen::get_default();
    if (!screen)
        return;
    const auto provider = Gtk::CssProvider::create();
    provider->signal_parsing_error().connect(
        [&name](const Glib::RefPtr<const Gtk::CssSection>& section, const Glib::Error& error) {
            warn(name, "line " + std::to_string(section->get_start_line() + 1) + ": " + error.what().raw());
        });
    // Asked for an error, GTK would drop the whole sheet for one bad rule.
    gtk_css_provider_load_from_path(provider->gobj(), (Kes::getThemesDir() + name).c_str(), nullptr);
    Gtk::StyleContext::add_provider_for_screen(screen, provider, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

} // namespace

void Style::setStyle(const std::string& name)
{
    static std::set<std::string> loaded;
    if (loaded.insert(name).second)
        load(name);
}

} // namespace KesView
