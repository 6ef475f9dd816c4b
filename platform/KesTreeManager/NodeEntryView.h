#pragma once

#include <KesTreeManager/NodeValueView.h>

#include <gtkmm/entry.h>

namespace KesTree {

/// A number or a text in an entry. Enter moves to the next editor unless the text has a problem, Escape
/// restores the value; an Escape with nothing to restore is left to the window. GUI thread.
class KES_EXPORT NodeEntryView : public NodeValueView {
public:
    /// A number stands at the right, beside its unit; a text at the left. What is typed is not checked
    /// here.
    NodeEntryView(const std::string& name, const std::string& unit, bool isNumber);

    /// The place of the cursor stays when the entry shows this text already.
    void setText(const std::string& text) override;

private:
    void _updateEditor(bool editable) override;
    void _onChanged();
    void _onActivate();
    /// Asked before the window, which Escape may close.
    bool _onKeyPress(GdkEventKey* event);
    bool _onFocusOut(GdkEventFocus* event);

    Gtk::Entry _entry;
    /// GTK reports a text set by the program as it does one that is typed.
    bool _isSetting = false;
    /// Since the last `setText`: there is something to restore.
    bool _isEdited = false;
};

} // namespace KesTree
