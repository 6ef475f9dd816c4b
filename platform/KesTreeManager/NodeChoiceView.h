#pragma once

#include <KesTreeManager/NodeValueView.h>

#include <gtkmm/box.h>
#include <gtkmm/comboboxtext.h>
#include <gtkmm/entry.h>

#include <vector>

namespace KesTree {

/// One of several in a drop-down list; read-only, its name in an entry, so that it can be copied. GUI thread.
class KES_EXPORT NodeChoiceView : public NodeValueView {
public:
    NodeChoiceView(const std::string& name, const std::vector<std::string>& choices);

    void setText(const std::string& text) override;

private:
    void _updateEditor(bool editable) override;
    void _onChanged();
    bool _onScroll(GdkEventScroll* event);

    Gtk::Box _box;
    Gtk::ComboBoxText _combo;
    Gtk::Entry _text;
    bool _isSetting = false;
};

} // namespace KesTree
