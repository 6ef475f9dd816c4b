#pragma once

#include <KesCommonView/ChoiceBox.h>
#include <KesTreeManager/NodeValueView.h>

#include <gtkmm/box.h>
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

    Gtk::Box _box;
    Kes::ChoiceBox _combo;
    Gtk::Entry _text;
    bool _isSetting = false;
};

} // namespace KesTree
