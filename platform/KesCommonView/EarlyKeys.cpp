#include <KesCommonView/EarlyKeys.h>

#include <gtk/gtk.h>

#include <utility>

namespace Kes {

// GTK calls this old-fashioned, but the file chooser is a window of its own making, which offers nothing
// else.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

EarlyKeys::EarlyKeys(Handler handler)
    : _handler(std::move(handler)), _snooper(gtk_key_snooper_install(&EarlyKeys::_hear, this))
{}

EarlyKeys::~EarlyKeys()
{
    gtk_key_snooper_remove(_snooper);
}

G_GNUC_END_IGNORE_DEPRECATIONS

gint EarlyKeys::_hear(GtkWidget* widget, GdkEventKey* event, gpointer self)
{
    auto* window = gtk_widget_get_toplevel(widget);
    if (event->type != GDK_KEY_PRESS || !GTK_IS_WINDOW(window))
        return false;
    return static_cast<EarlyKeys*>(self)->_handler(GTK_WINDOW(window), *event);
}

} // namespace Kes
