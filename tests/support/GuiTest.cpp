#include "GuiTest.h"

#include "DefaultHardware.h"

#include <KesCommon/Language.h>
#include <KesCommonView/ApplicationDispatcher.h>

#include <gtk/gtk.h>
#include <gtkmm/main.h>

#include <stdexcept>

namespace KesTest {

namespace {

void initialiseGtk()
{
    static const bool done = [] {
        if (!gtk_init_check(nullptr, nullptr))
            throw std::runtime_error("no display: run the test through tests/support/headless.sh");
        Gtk::Main::init_gtkmm_internals();
        return true;
    }();
    (void)done;
}

} // namespace

GuiTest::GuiTest()
{
    initialiseGtk();
    lng::language = lng::English;
    Kes::ApplicationDispatcherPresenter::getInstance().registerDispatcher();
}

GuiTest::~GuiTest()
{
    runPendingEvents();
    // What a test has replaced ends on threads of its own, which speak in this language.
    DefaultHardware::restore();
    lng::language = lng::English;
}

std::vector<Gtk::Widget*> findWidgets(Gtk::Widget& root, const std::function<bool(Gtk::Widget&)>& predicate)
{
    std::vector<Gtk::Widget*> found;
    if (predicate(root))
        found.push_back(&root);
    std::vector<GtkWidget*> children;
    if (GTK_IS_CONTAINER(root.gobj()))
        gtk_container_forall(
            GTK_CONTAINER(root.gobj()),
            [](GtkWidget* child, gpointer all) { static_cast<decltype(&children)>(all)->push_back(child); },
            &children);
    for (auto* child : children)
        for (auto* widget : findWidgets(*Glib::wrap(child), predicate))
            found.push_back(widget);
    return found;
}

Gtk::Widget* findByClass(Gtk::Widget& root, const std::string& styleClass)
{
    const auto found = findWidgets(
        root, [&](Gtk::Widget& widget) { return widget.get_style_context()->has_class(styleClass); });
    return found.empty() ? nullptr : found.front();
}

int widthOf(const Gtk::Widget& widget)
{
    int least = 0, natural = 0;
    widget.get_preferred_width(least, natural);
    return natural;
}

bool isSeen(const Gtk::Widget& widget)
{
    return widget.is_visible();
}

void pressKey(Gtk::Window& window, unsigned key, unsigned state)
{
    auto* display = gdk_display_get_default();
    auto* event = gdk_event_new(GDK_KEY_PRESS);
    event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(GTK_WIDGET(window.gobj()))));
    event->key.keyval = key;
    event->key.state = state;
    // Key bindings are looked up by the place of the key, not by its value.
    GdkKeymapKey* places = nullptr;
    int count = 0;
    if (gdk_keymap_get_entries_for_keyval(gdk_keymap_get_for_display(display), key, &places, &count)) {
        event->key.hardware_keycode = static_cast<guint16>(places[0].keycode);
        event->key.group = static_cast<guint8>(places[0].group);
        g_free(places);
    }
    gdk_event_set_device(event, gdk_seat_get_keyboard(gdk_display_get_default_seat(display)));
    gtk_main_do_event(event);
    gdk_event_free(event);
}

} // namespace KesTest
