#pragma once

#include <KesTreeManager/NodeValueView.h>

#include <gtkmm/entry.h>

namespace KesTree {

/// A number or a text in an entry. Enter moves to the next editor, Escape restores the value.
/// GUI thread.
class KES_EXPORT NodeEntryView : public NodeValueView {
public:
    NodeEntryView(const std::string& name, const std::string& unit, bool isNumber);

    void setText(const std::string& text) override;

private:
    void _updateEditor(bool editable) override;
    void _onChanged();
    void _onActivate();
    bool _onKeyPress(GdkEventKey* event);
    bool _onFocusOut(GdkEventFocus* event);

    Gtk::Entry _entry;
    bool _isSetting = false;
    bool _isEdited = false;
};

} // namespace KesTree
