#include <KesTreeManager/NodeEntryView.h>

#include <gdk/gdkkeysyms.h>

namespace KesTree {

NodeEntryView::NodeEntryView(const std::string& name, const std::string& unit, bool isNumber)
    : NodeValueView(name, unit)
{
    _entry.set_width_chars(isNumber ? 10 : 24);
    _entry.set_alignment(isNumber ? Gtk::ALIGN_END : Gtk::ALIGN_START);
    if (isNumber)
        _entry.set_input_purpose(Gtk::INPUT_PURPOSE_NUMBER);
    _setEditor(_entry, _entry);
    _entry.signal_changed().connect(sigc::mem_fun(*this, &NodeEntryView::_onChanged));
    _entry.signal_activate().connect(sigc::mem_fun(*this, &NodeEntryView::_onActivate));
    _entry.signal_key_press_event().connect(sigc::mem_fun(*this, &NodeEntryView::_onKeyPress), false);
    _entry.signal_focus_out_event().connect(sigc::mem_fun(*this, &NodeEntryView::_onFocusOut));
}

void NodeEntryView::setText(const std::string& text)
{
    _isEdited = false;
    if (_entry.get_text().raw() == text)
        return;
    _isSetting = true;
    _entry.set_text(text);
    _isSetting = false;
}

void NodeEntryView::_updateEditor(bool editable)
{
    _entry.set_editable(editable);
    if (editable)
        _entry.get_style_context()->remove_class("kes-read-only");
    else
        _entry.get_style_context()->add_class("kes-read-only");
}

void NodeEntryView::_onChanged()
{
    if (_isSetting)
        return;
    _isEdited = true;
    signalEdited.emit(_entry.get_text().raw());
}

void NodeEntryView::_onActivate()
{
    signalFinished.emit();
    auto* window = _entry.get_toplevel();
    if (!_hasProblem() && window)
        window->child_focus(Gtk::DIR_TAB_FORWARD);
}

bool NodeEntryView::_onKeyPress(GdkEventKey* event)
{
    if (event->keyval != GDK_KEY_Escape || !(_isEdited || _hasProblem()))
        return false;
    signalRestored.emit();
    _entry.select_region(0, -1);
    return true;
}

bool NodeEntryView::_onFocusOut(GdkEventFocus*)
{
    signalFinished.emit();
    return false;
}

} // namespace KesTree
