#pragma once

#include <KesCommonView/ReadOnlySwitchableContainerPresenter.h>
#include <KesCommonView/SharedSizeGroup.h>
#include <KesTreeManager/INodeTreeView.h>

#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>

#include <vector>

namespace KesTree {

/// A form: groups with a heading, those within others collapsible, and one row per value. It scrolls when it
/// does not fit, and follows the focus. GUI thread.
class KES_EXPORT NodeTreeView : public Gtk::ScrolledWindow,
                                public INodeTreeView,
                                public Kes::IReadOnlySwitchable {
public:
    NodeTreeView();

    void beginGroup(const std::string& title, const std::string& icon, bool isFolded) override;
    void endGroup() override;
    void addValue(Kes::IView& value) override;
    void setIsReadOnly(bool readOnly) override;

private:
    Gtk::Box& _addRootGroup(Gtk::Widget& heading);
    Gtk::Box& _addInnerGroup(const std::string& title, Gtk::Widget& heading, bool isFolded);

    Kes::SharedSizeGroupOwner _columns;
    Gtk::Box _content;
    /// The groups that are being filled, innermost last.
    std::vector<Gtk::Box*> _open;
};

} // namespace KesTree
