#pragma once

#include "MainLoop.h"
#include "ScriptedDialogs.h"

#include <KesCommonView/IView.h>

#include <atkmm/object.h>
#include <gdk/gdkkeysyms.h>
#include <gmock/gmock.h>
#include <gtkmm.h>

#include <functional>
#include <string>
#include <vector>

namespace KesTest {

/// A test that shows real widgets: GTK is initialised once per process, the calling thread is the GUI
/// thread of the dispatcher, texts are English, and dialogs are answered from `dialogs`.
class GuiTest : public testing::Test {
protected:
    GuiTest();
    /// Runs what is still queued and puts the default configuration back, so that no test meets the rest of
    /// another one.
    ~GuiTest() override;

    ScriptedDialogs dialogs;
};

/// A view that can be placed.
struct LabelView : Gtk::Label, Kes::IView {
    using Gtk::Label::Label;
};

/// A view that cannot.
struct NoWidgetView : Kes::IView {};

/// The descendants of the widget (itself included, internal children too) that satisfy the predicate,
/// in order of their place in the tree.
std::vector<Gtk::Widget*> findWidgets(Gtk::Widget& root, const std::function<bool(Gtk::Widget&)>& predicate);

/// How wide the widget would like to be, in pixels.
int widthOf(const Gtk::Widget& widget);

/// The descendants of a type, in order of their place in the tree.
template <typename T>
std::vector<T*> findWidgets(Gtk::Widget& root)
{
    std::vector<T*> found;
    for (auto* widget : findWidgets(root, [](Gtk::Widget& w) { return dynamic_cast<T*>(&w) != nullptr; }))
        found.push_back(dynamic_cast<T*>(widget));
    return found;
}

/// The first descendant with the style class; null when there is none.
Gtk::Widget* findByClass(Gtk::Widget& root, const std::string& styleClass);

/// Whether a user sees the widget: it and everything above it is shown.
bool isSeen(const Gtk::Widget& widget);

/// Presses a key in the window, as the keyboard does: the focused widget gets it first. `key` is a value of
/// gdkkeysyms.h that is on the keyboard, `state` the modifiers held.
void pressKey(Gtk::Window& window, unsigned key, unsigned state = 0);

} // namespace KesTest
