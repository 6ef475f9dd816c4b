#pragma once

#include <KesTreeManager/NodeValueView.h>

#include <gtkmm/checkbutton.h>

namespace KesTree {

/// Yes or no in a check box. A click is edited and finished at once. Read-only, the box is off as one that
/// is out of use. GUI thread.
class KES_EXPORT NodeFlagView : public NodeValueView {
public:
    /// The texts of the two values, by which the node tells them apart; the box shows neither of them.
    NodeFlagView(const std::string& name, std::string no, std::string yes);

    /// The text of yes checks the box, any other one clears it.
    void setText(const std::string& text) override;

private:
    /// GTK's check boxes know no read-only state.
    void _updateEditor(bool editable) override;
    void _onToggled();

    std::string _no;
    std::string _yes;
    Gtk::CheckButton _check;
    /// GTK reports a change by the program as it does a click.
    bool _isSetting = false;
};

} // namespace KesTree
