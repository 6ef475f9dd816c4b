#include <KesTreeManager/NodeTreeContentPresenter.h>

#include <KesTreeManager/NodeTreeView.h>
#include <KesTreeManager/NodeValuePresenter.h>

namespace KesTree {

NodeTreeContentPresenter::NodeTreeContentPresenter(Node* root) : _root(root) {}

NodeTreeContentPresenter::~NodeTreeContentPresenter() = default;

std::unique_ptr<NodeTreeView> NodeTreeContentPresenter::_createDefaultView()
{
    return std::make_unique<NodeTreeView>();
}

void NodeTreeContentPresenter::_onViewInited()
{
    if (!_root)
        return;
    if (_root->getType() == NodeType::Group)
        _addGroup(*_root);
    else
        _addValue(*_root);
    _getView().signalReadOnlyChanged.connect(
        sigc::mem_fun(*this, &NodeTreeContentPresenter::_onReadOnlyChanged));
    _root->signalChanged.connect(sigc::mem_fun(*this, &NodeTreeContentPresenter::_onTreeChanged));
}

void NodeTreeContentPresenter::_addGroup(Node& group)
{
    _getView().beginGroup(group.getName(), "kes-node-" + group.getId() + "-symbolic", !group.isUsed());
    for (const auto& child : group.getChildren()) {
        if (child->getType() == NodeType::Group)
            _addGroup(*child);
        else
            _addValue(*child);
    }
    _getView().endGroup();
}

void NodeTreeContentPresenter::_addValue(Node& node)
{
    _values.push_back(std::make_unique<NodeValuePresenter>(node, NodeValuePresenter::createView(node)));
    _getView().addValue(_values.back()->getView());
}

void NodeTreeContentPresenter::_onTreeChanged(Node& changed)
{
    for (const auto& value : _values)
        value->onTreeChanged(changed);
}

void NodeTreeContentPresenter::_onReadOnlyChanged(bool readOnly)
{
    for (const auto& value : _values)
        value->setIsReadOnly(readOnly);
}

} // namespace KesTree
