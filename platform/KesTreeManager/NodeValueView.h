#pragma once

#include <KesCommonView/IView.h>
#include <KesCommonView/RoomyBox.h>
#include <KesCommonView/SharedSizeGroup.h>
#include <KesCommonView/ZoomedIcon.h>

#include <gtkmm/box.h>
#include <gtkmm/label.h>
#include <sigc++/sigc++.h>

#include <string>

namespace KesTree {

/// A row: name, editor with unit, and a hint that gives way to the problem. The columns of all rows below
/// one `Kes::SharedSizeGroupOwner` are aligned. It checks nothing. The concrete rows add their editor. GUI
/// thread.
class KES_EXPORT NodeValueView : public Gtk::Box, public Kes::IView {
public:
    /// The user has changed the text, perhaps not for the last time.
    sigc::signal<void(const std::string&)> signalEdited;
    /// The user has finished editing: has pressed Enter or gone elsewhere.
    sigc::signal<void()> signalFinished;
    /// The user wants the value back with which the editing began.
    sigc::signal<void()> signalRestored;

    /// The value in the editor; without a signal.
    virtual void setText(const std::string& text) = 0;
    /// What is said beside the editor while there is no problem, such as the range.
    void setHint(const std::string& hint);
    /// Why the text in the editor is not accepted; empty when it is.
    void setProblem(const std::string& problem);
    /// A value that is out of use is shown, but not edited.
    void setIsUsed(bool used);
    /// The text can still be selected and copied.
    void setIsReadOnly(bool readOnly);

protected:
    /// The unit stands behind the editor and in its accessible name; empty: none.
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
