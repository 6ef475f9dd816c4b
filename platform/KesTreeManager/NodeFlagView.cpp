#include <KesTreeManager/NodeFlagView.h>

namespace KesTree {

NodeFlagView::NodeFlagView(const std::string& name, std::string no, std::string yes)
    : NodeValueView(name, {}), _no(std::move(no)), _yes(std::move(yes))
{
    _setEditor(_check, _check);
    _check.signal_toggled().connect(sigc::mem_fun(*this, &NodeFlagView::_onToggled));
}

void NodeFlagView::setText(const std::string& text)
{
    _isSetting = true;
    _check.set_active(text == _yes);
    _isSetting = false;
}

void NodeFlagView::_updateEditor(bool editable)
{
    _check.set_sensitive(editable);
}

void NodeFlagView::_onToggled()
{
    if (_isSetting)
        return;
    signalEdited.emit(_check.get_active() ? _yes : _no);
    signalFinished.emit();
}

} // namespace KesTree
