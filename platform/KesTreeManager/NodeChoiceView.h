#pragma once

#include <KesCommonView/ChoiceBox.h>
#include <KesTreeManager/NodeValueView.h>

#include <gtkmm/box.h>
#include <gtkmm/entry.h>

#include <vector>

namespace KesTree {

/// One of several in a drop-down list; read-only, its name in an entry, so that it can be copied. What the
/// user chooses is edited and finished at once. GUI thread.
class KES_EXPORT NodeChoiceView : public NodeValueView {
public:
    /// `choices` are the names that the user reads, in the order of the list; equal ones could not be told
    /// apart.
    NodeChoiceView(const std::string& name, const std::vector<std::string>& choices);

    /// One of the choices; another text chooses none, but is shown while read-only.
    void setText(const std::string& text) override;

private:
    void _updateEditor(bool editable) override;
    void _onChanged();

    Gtk::Box _box;
    Kes::ChoiceBox _combo;
    /// In the place of the list while read-only.
    Gtk::Entry _text;
    /// GTK reports a choice by the program as it does one by the user.
    bool _isSetting = false;
};

} // namespace KesTree
