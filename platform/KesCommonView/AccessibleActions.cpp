#include <KesCommonView/AccessibleActions.h>

#include <glibmm/main.h>
#include <gtk/gtk-a11y.h>
#include <gtk/gtk.h>

#include <memory>

namespace Kes::AccessibleActions {

namespace {

using DoAction = gboolean (*)(AtkAction*, gint);

GtkWidget* getWidget(AtkAction* action)
{
    return gtk_accessible_get_widget(GTK_ACCESSIBLE(action));
}

/// The menu of an item that is not open would be asked to hold the keyboard, which it cannot.
bool activateInClosedMenu(AtkAction* action)
{
    auto* widget = getWidget(action);
    if (!GTK_IS_MENU_ITEM(widget) || gtk_widget_get_mapped(widget) ||
        gtk_menu_item_get_submenu(GTK_MENU_ITEM(widget)))
        return false;
    gtk_menu_item_activate(GTK_MENU_ITEM(widget));
    return true;
}

/// One per type, because a function of C has no room for what it replaces.
template <GType (*getType)()>
class Deferred {
public:
    static void install()
    {
        if (_original)
            return;
        // The class stays as it is for the life of the process.
        auto* iface =
            static_cast<AtkActionIface*>(g_type_interface_peek(g_type_class_ref(getType()), ATK_TYPE_ACTION));
        _original = iface->do_action;
        iface->do_action = &Deferred::_defer;
    }

private:
    static gboolean _defer(AtkAction* action, gint index)
    {
        auto* widget = getWidget(action);
        if (!widget || !gtk_widget_is_sensitive(widget) || !gtk_widget_get_visible(widget))
            return FALSE;
        g_object_ref(action);
        const std::shared_ptr<AtkAction> kept(action, g_object_unref);
        Glib::signal_idle().connect_once([kept, index] { _perform(kept.get(), index); },
                                         Glib::PRIORITY_DEFAULT);
        return TRUE;
    }

    static void _perform(AtkAction* action, gint index)
    {
        auto* widget = getWidget(action); // null when it has been destroyed meanwhile
        if (widget && gtk_widget_is_sensitive(widget) && !activateInClosedMenu(action))
            _original(action, index);
    }

    static inline DoAction _original = nullptr;
};

} // namespace

void comeFromMainLoop()
{
    Deferred<gtk_button_accessible_get_type>::install();
    Deferred<gtk_menu_item_accessible_get_type>::install();
}

} // namespace Kes::AccessibleActions
