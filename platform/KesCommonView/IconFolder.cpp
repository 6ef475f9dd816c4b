#include <KesCommonView/IconFolder.h>

#include <KesCommon/Directories.h>

#include <gtk/gtk.h>

#include <set>

namespace KesView {

namespace {

std::set<std::string>& folders()
{
    static std::set<std::string> names;
    return names;
}

void addTo(GdkDisplay* display, const std::string& name)
{
    gtk_icon_theme_append_search_path(gtk_icon_theme_get_for_screen(gdk_display_get_default_screen(display)),
                                      Kes::findDataFile("themes/" + name).c_str());
}

void onDisplayOpened(GdkDisplayManager*, GdkDisplay* display, gpointer)
{
    for (const auto& name : folders())
        addTo(display, name);
}

} // namespace

void IconFolder::add(const std::string& name)
{
    static const auto handler =
        g_signal_connect(gdk_display_manager_get(), "display-opened", G_CALLBACK(onDisplayOpened), nullptr);
    (void)handler;
    if (!folders().insert(name).second)
        return;
    auto* displays = gdk_display_manager_list_displays(gdk_display_manager_get());
    for (auto* display = displays; display; display = display->next)
        addTo(GDK_DISPLAY(display->data), name);
    g_slist_free(displays);
}

} // namespace KesView
