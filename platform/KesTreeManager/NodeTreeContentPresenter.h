#pragma once

#include <KesCommonView/PresenterBase.h>
#include <KesTree/Node.h>
#include <KesTreeManager/NodeTreeView.h>

#include <memory>
#include <vector>

namespace KesTree {

class NodeValuePresenter;

/// Shows a tree of nodes with an editor for each value. What the user types takes effect as soon as it is
/// acceptable; what cannot be accepted is marked and explained beside the editor, and the old value stays in
/// the node. Follows changes made elsewhere, but not nodes added later. The nodes outlive it. GUI thread.
///
/// Its view can be placed in a `Kes::ReadOnlySwitchableContainerPresenter`: read-only, texts can still be
/// selected and scrolled.
class KES_EXPORT NodeTreeContentPresenter : public Kes::PresenterBase<NodeTreeView> {
public:
    /// Null shows nothing; a value without a group is shown as the only row. The form is built when the
    /// view is first asked for.
    explicit NodeTreeContentPresenter(Node* root);
    ~NodeTreeContentPresenter() override;

protected:
    std::unique_ptr<NodeTreeView> _createDefaultView() override;
    void _onViewInited() override;

private:
    void _addGroup(Node& group);
    void _addValue(Node& node);
    void _onTreeChanged(Node& changed);
    void _onReadOnlyChanged(bool readOnly);

    Node* _root;
    std::vector<std::unique_ptr<NodeValuePresenter>> _values;
};

} // namespace KesTree
