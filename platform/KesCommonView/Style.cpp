#include <KesCommonView/Style.h>

#include <KesCommon/Directories.h>
#include <KesCommon/Log.h>

#include <gdkmm/screen.h>
#include <giomm/file.h>
#include <glibmm/convert.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/csssection.h>
#include <gtkmm/stylecontext.h>

#include <set>
#include <vector>

namespace KesView {

namespace {

void warn(const Glib::RefPtr<const Gtk::CssSection>& section, const Glib::Error& error)
{
    // Without a file it is the sheet itself that is missing, which the error names.
    const auto file = section->get_file();
    const auto place =
        file ? " " + file->get_parse_name() + ": line " + std::to_string(section->get_start_line() + 1) : "";
    KesLog::Log::writeWarn("Style sheet" + place + ": " + error.what().raw());
}

/// One provider for all of them: each one added has the whole screen styled again.
void load(const std::vector<std::string>& names)
{
    const auto screen = Gdk::Screen::get_default();
    if (!screen || names.empty())
        return;
    std::string imports;
    for (const auto& name : names)
        imports += "@import url(\"" + Glib::filename_to_uri(Kes::findDataFile("themes/" + name)) + "\");\n";
    const auto provider = Gtk::CssProvider::create();
    provider->signal_parsing_error().connect(sigc::ptr_fun(&warn));
    // Asked for an error, GTK would drop the whole sheet for one bad rule.
    gtk_css_provider_load_from_data(provider->gobj(), imports.data(), static_cast<gssize>(imports.size()),
                                    nullptr);
    Gtk::StyleContext::add_provider_for_screen(screen, provider, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

} // namespace

void Style::setStyle(const std::string& name)
{
    setStyle({name});
}

void Style::setStyle(std::initializer_list<std::string> names)
{
    static std::set<std::string> loaded;
    std::vector<std::string> added;
    for (const auto& name : names)
        if (loaded.insert(name).second)
            added.push_back(name);
    load(added);
}

} // namespace KesView
