#pragma once

#include <KesCommonView/RoomyBox.h>
#include <KesCommonView/SharedSizeGroup.h>
#include <KesCommonView/ZoomedIcon.h>
#include <KesTreeManager/INodeValueView.h>

#include <gtkmm/box.h>
#include <gtkmm/label.h>

#include <string>

namespace KesTree {

/// A row: name, editor with unit, and a hint that gives way to the problem. The columns of all rows below
/// one `Kes::SharedSizeGroupOwner` are aligned. The concrete rows add their editor. GUI thread.
class KES_EXPORT NodeValueView : public Gtk::Box, public INodeValueView {
public:
    void setHint(const std::string& hint) override;
    void setProblem(const std::string& problem) override;
    void setIsUsed(bool used) override;
    void setIsReadOnly(bool readOnly) override;

protected:
    NodeValueView(const std::string& name, const std::string& unit);

    /// Places the editor and ties it to the name; called once. `focus` is the widget that is edited, when it
    /// is not the editor itself.
    void _setEditor(Gtk::Widget& editor, Gtk::Widget& focus);
    bool _hasProblem() const { return !_problemText.empty(); }
    /// Applies what has been set to the editor.
    virtual void _updateEditor(bool editable) = 0;

private:
    void _updateNote();

    std::string _hintText;
    std::string _problemText;
    bool _isUsed = true;
    bool _isReadOnly = false;
    Gtk::Label _name;
    Gtk::Label _unit;
    Gtk::Box _cell;
    Kes::RoomyBox _note;
    Kes::ZoomedIcon _problemIcon{"dialog-warning-symbolic"};
    Gtk::Label _noteText;
    Gtk::Widget* _focus = nullptr;
};

} // namespace KesTree
