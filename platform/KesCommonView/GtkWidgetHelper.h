#pragma once

#include <KesCommonView/IView.h>

#include <gtkmm/container.h>
#include <gtkmm/widget.h>
#include <gtkmm/window.h>

#include <string>

/// What every view needs of GTK. GUI thread.
namespace Kes::GtkWidgetHelper {

/// The top-level window that the view is, or is placed in; null when there is none.
KES_EXPORT Gtk::Window* getParentWindow(IView* view);

/// The name under which assistive technology knows the widget. A combo box is named once.
KES_EXPORT void setAccessibleName(Gtk::Widget& widget, const std::string& name);

/// Takes every child out of a container; the children are not destroyed when somebody else owns them.
KES_EXPORT void removeChildren(Gtk::Container& container);

} // namespace Kes::GtkWidgetHelper
