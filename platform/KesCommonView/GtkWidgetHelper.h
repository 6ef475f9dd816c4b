#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/container.h>
#include <gtkmm/label.h>
#include <gtkmm/widget.h>
#include <gtkmm/window.h>

#include <string>

/// What every view needs of GTK. GUI thread.
namespace Kes::GtkWidgetHelper {

/// The top-level window that the view is, or is placed in; null when there is none.
KES_EXPORT Gtk::Window* getParentWindow(IView* view);

/// The name under which assistive technology knows the widget. A combo box is named once.
KES_EXPORT void setAccessibleName(Gtk::Widget& widget, const std::string& name);

/// The tooltip of a widget, which would be read out as its description as well: that is `description` only,
/// what the name does not say yet.
KES_EXPORT void setTooltip(Gtk::Widget& widget, const std::string& tooltip,
                           const std::string& description = {});

/// Switches a control off while it is busy, and on again: when it had the keyboard, that comes back to it,
/// unless the user has gone elsewhere meanwhile.
KES_EXPORT void setBusy(Gtk::Widget& widget, bool busy);

/// Breaks the lines of a label that has no room, inside of words as well: for paths and names. No hyphen is
/// shown at a break, since it could be taken for a part of the path. Replaces the attributes of the label.
KES_EXPORT void wrapAnywhere(Gtk::Label& label, Pango::WrapMode mode = Pango::WRAP_WORD_CHAR);

/// Takes a child out of its container, in place of `Gtk::Container::remove`, which keeps a managed child
/// alive for ever: here one that nobody else refers to is freed, and one in whose own signal handler this
/// happens when that has ended. A child that is not managed stays with its owner.
KES_EXPORT void removeChild(Gtk::Container& container, Gtk::Widget& child);

/// Empties a container, child by child as `removeChild` does.
KES_EXPORT void removeChildren(Gtk::Container& container);

} // namespace Kes::GtkWidgetHelper
