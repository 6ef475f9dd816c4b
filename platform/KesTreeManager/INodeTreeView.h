#pragma once

#include <KesCommonView/IView.h>

#include <sigc++/sigc++.h>

#include <string>

namespace KesTree {

/// The groups and values of a tree, below each other. Filled once, from top to bottom. GUI thread.
class KES_EXPORT INodeTreeView : public Kes::IView {
public:
    /// The values are to become read-only, or editable again.
    sigc::signal<void(bool)> signalReadOnlyChanged;

    /// What is added next belongs to a new group, up to the matching `endGroup`. `icon` names an icon of the
    /// icon theme. A group within another one may be folded at first.
    virtual void beginGroup(const std::string& title, const std::string& icon, bool isFolded) = 0;
    virtual void endGroup() = 0;
    /// Places the view of a value; it is not owned.
    virtual void addValue(Kes::IView& value) = 0;
};

} // namespace KesTree
