#pragma once

#include <gtk/gtk.h>

#include <memory>

namespace KesTest {

/// Counts the widgets that were first placed in another one or shown since the object was made, and that have
/// not been freed; windows that were never shown are left to `countWindows`. For counting, not for asking
/// which: what GTK keeps for itself (styles, tooltips) counts too. GUI thread, after GTK has been
/// initialised.
class LiveWidgets {
public:
    LiveWidgets()
    {
        for (auto& hook : _hooks)
            hook.id = g_signal_add_emission_hook(_signalOf(hook.name), 0, &_onPlaced, &_count, nullptr);
    }
    ~LiveWidgets()
    {
        for (const auto& hook : _hooks)
            g_signal_remove_emission_hook(_signalOf(hook.name), hook.id);
    }
    LiveWidgets(const LiveWidgets&) = delete;
    LiveWidgets& operator=(const LiveWidgets&) = delete;

    int getCount() const { return *_count; }

private:
    /// Widgets may outlive the counting.
    using Count = std::shared_ptr<int>;

    struct Hook {
        const char* name;
        gulong id;
    };

    static guint _signalOf(const char* name)
    {
        // Signals come with the class.
        g_type_class_unref(g_type_class_ref(GTK_TYPE_WIDGET));
        return g_signal_lookup(name, GTK_TYPE_WIDGET);
    }

    static gboolean _onPlaced(GSignalInvocationHint*, guint, const GValue* values, gpointer count)
    {
        auto* widget = G_OBJECT(g_value_get_object(values));
        constexpr const char* mark = "kes-test-counted";
        if (!g_object_get_data(widget, mark)) {
            auto* shared = new Count(*static_cast<Count*>(count));
            ++**shared;
            // Freed data tells of the end of the widget itself; a weak reference already ends when it is
            // destroyed while somebody still keeps it.
            g_object_set_data_full(widget, mark, shared, &_onFreed);
        }
        return TRUE;
    }

    static void _onFreed(gpointer count)
    {
        const std::unique_ptr<Count> shared(static_cast<Count*>(count));
        --**shared;
    }

    Hook _hooks[2]{{"parent-set", 0}, {"show", 0}};
    Count _count = std::make_shared<int>(0);
};

/// The windows there are, shown or not, those of menus included. GUI thread.
inline unsigned countWindows()
{
    GList* windows = gtk_window_list_toplevels();
    const unsigned count = g_list_length(windows);
    g_list_free(windows);
    return count;
}

} // namespace KesTest
