#pragma once

#include <KesTree/Node.h>
#include <KesTreeManager/NodeValueView.h>

#include <memory>

namespace KesTree {

/// Lets the user edit one value. While no problem is shown, the node holds what the editor shows; while one
/// is shown, the value with which the editing began. It does not listen to the node by itself: who shows
/// the tree passes changes on with `onTreeChanged`. The node outlives it. GUI thread.
class KES_EXPORT NodeValuePresenter : public sigc::trackable {
public:
    NodeValuePresenter(Node& node, std::unique_ptr<NodeValueView> view);
    ~NodeValuePresenter();

    NodeValueView& getView() { return *_view; }

    /// The view that suits the node's type, of a value; a group has none.
    static std::unique_ptr<NodeValueView> createView(const Node& node);

    /// A value of the tree has changed: this one, or one on which this one's rules may depend. A text that
    /// was refused is tried again then.
    void onTreeChanged(const Node& changed);
    /// A text that has been refused gives way to the value.
    void setIsReadOnly(bool readOnly);

private:
    void _onEdited(const std::string& text);
    void _onFinished();
    void _onRestored();
    void _tryText();
    void _showValue();
    void _showUsage();

    Node& _node;
    std::unique_ptr<NodeValueView> _view;
    /// What the editor shows.
    std::string _text;
    /// The value when the user began to edit; nothing while the editor rests.
    Node::Value _before;
    bool _isRefused = false;
    /// The node is being changed from here: what it holds is not shown again, in the midst of typing.
    bool _isCommitting = false;
};

} // namespace KesTree
