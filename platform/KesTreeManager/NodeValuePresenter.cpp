#include <KesTreeManager/NodeValuePresenter.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesTree/TreeText.h>
#include <KesTree/ValueError.h>
#include <KesTreeManager/NodeChoiceView.h>
#include <KesTreeManager/NodeEntryView.h>
#include <KesTreeManager/NodeFlagView.h>

namespace KesTree {

namespace {

std::string reasonOf(const Kes::Result& result)
{
    if (const auto* error = dynamic_cast<const ValueError*>(result.getError().get()))
        return error->getReason();
    return Kes::ObjectErrorHelper::toDisplayString({result.getError()});
}

} // namespace

NodeValuePresenter::NodeValuePresenter(Node& node, std::unique_ptr<NodeValueView> view)
    : _node(node), _view(std::move(view))
{
    _showValue();
    _showUsage();
    _view->signalEdited.connect(sigc::mem_fun(*this, &NodeValuePresenter::_onEdited));
    _view->signalFinished.connect(sigc::mem_fun(*this, &NodeValuePresenter::_onFinished));
    _view->signalRestored.connect(sigc::mem_fun(*this, &NodeValuePresenter::_onRestored));
}

NodeValuePresenter::~NodeValuePresenter()
{
    // Taking a focused editor out of its window makes it report that the editing is finished.
    notify_callbacks();
}

std::unique_ptr<NodeValueView> NodeValuePresenter::createView(const Node& node)
{
    switch (node.getType()) {
    case NodeType::Choice:
        return std::make_unique<NodeChoiceView>(node.getName(), node.getChoices());
    case NodeType::Boolean:
        return std::make_unique<NodeFlagView>(node.getName(), lng::Tree::get("Value.no"),
                                              lng::Tree::get("Value.yes"));
    case NodeType::Text:
        return std::make_unique<NodeEntryView>(node.getName(), std::string(), false);
    default:
        return std::make_unique<NodeEntryView>(node.getName(), node.getUnit(), true);
    }
}

void NodeValuePresenter::onTreeChanged(const Node& changed)
{
    if (&changed != &_node) {
        _showUsage();
        if (_isRefused)
            _tryText();
    } else if (!_isCommitting) {
        _showValue();
    }
}

void NodeValuePresenter::setIsReadOnly(bool readOnly)
{
    if (readOnly && _isRefused)
        _showValue();
    _view->setIsReadOnly(readOnly);
}

void NodeValuePresenter::_onEdited(const std::string& text)
{
    if (_before.index() == 0)
        _before = _node.getValue();
    _text = text;
    _tryText();
    if (!_isRefused)
        return;
    // What has been taken on the way to a refused text ("11" of "110") was never meant.
    _isCommitting = true;
    (void)_node.setValue(_before);
    _isCommitting = false;
}

void NodeValuePresenter::_tryText()
{
    _isCommitting = true;
    const auto result = _node.setText(_text);
    _isCommitting = false;
    _isRefused = !result;
    _view->setProblem(_isRefused ? reasonOf(result) : std::string());
}

void NodeValuePresenter::_onFinished()
{
    _before = {};
    if (!_isRefused)
        _showValue();
}

void NodeValuePresenter::_onRestored()
{
    // A rule that depends on other values may refuse the old value by now; then the present one is shown.
    if (_before.index() != 0)
        (void)_node.setValue(_before);
    _showValue();
}

void NodeValuePresenter::_showValue()
{
    _before = {};
    _isRefused = false;
    _text = _node.toText();
    _view->setText(_text);
    _view->setProblem({});
}

void NodeValuePresenter::_showUsage()
{
    const bool used = _node.isUsed();
    if (!used && _isRefused)
        _showValue();
    _view->setIsUsed(used);
    _view->setHint(used ? _node.getRangeText() : lng::Tree::get("View.unused"));
}

} // namespace KesTree
