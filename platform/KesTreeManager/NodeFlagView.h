#pragma once

#include <KesTreeManager/NodeValueView.h>

#include <gtkmm/checkbutton.h>

namespace KesTree {

/// Yes or no in a check box. GUI thread.
class KES_EXPORT NodeFlagView : public NodeValueView {
public:
    /// The texts of the two values.
    NodeFlagView(const std::string& name, std::string no, std::string yes);

    void setText(const std::string& text) override;

private:
    void _updateEditor(bool editable) override;
    void _onToggled();

    std::string _no;
    std::string _yes;
    Gtk::CheckButton _check;
    bool _isSetting = false;
};

} // namespace KesTree
