#pragma once

#include <KesCommonView/IView.h>
#include <KesCommonView/ReadOnlySwitchableContainerPresenter.h>
#include <KesCommonView/SharedSizeGroup.h>

#include <gtkmm/box.h>
#include <gtkmm/scrolledwindow.h>
#include <sigc++/sigc++.h>

#include <string>
#include <vector>

namespace KesTree {

/// A form: groups with a heading, those within others collapsible, and one row per value. It scrolls when
/// it does not fit, and follows the focus. It only grows: a form for other values is another view. GUI
/// thread.
class KES_EXPORT NodeTreeView : public Gtk::ScrolledWindow,
                                public Kes::IView,
                                public Kes::IReadOnlySwitchable {
public:
    NodeTreeView();

    /// The values are to become read-only, or editable again.
    sigc::signal<void(bool)> signalReadOnlyChanged;

    /// What is added next belongs to a new group, up to the matching `endGroup`. `icon` names an icon of
    /// the icon theme; one that the theme does not have is left out. A group within another one may be
    /// folded at first.
    void beginGroup(const std::string& title, const std::string& icon, bool isFolded);
    void endGroup();
    /// Places the view of a value below the others; it is not owned, and has to be a widget
    /// (`std::bad_cast` otherwise).
    void addValue(Kes::IView& value);

    /// Only says so by the signal: the presenters of the values switch their views.
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
