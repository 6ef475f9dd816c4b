#include <KesTreeManager/NodeChoiceView.h>

#include <KesCommonView/GtkWidgetHelper.h>

#include <algorithm>

namespace KesTree {

namespace {

/// In characters, of the entry that stands for the list.
constexpr Glib::ustring::size_type widest = 28;

} // namespace

NodeChoiceView::NodeChoiceView(const std::string& name, const std::vector<std::string>& choices)
    : NodeValueView(name, {})
{
    Glib::ustring::size_type longest = 0;
    for (const auto& text : choices) {
        const Glib::ustring choice(text);
        _combo.append(choice);
        longest = std::max(longest, choice.size());
    }
    _text.set_editable(false);
    _text.get_style_context()->add_class("kes-read-only");
    Kes::GtkWidgetHelper::setAccessibleName(_text, name);
    _text.set_width_chars(static_cast<int>(std::min<Glib::ustring::size_type>(longest, widest)));
    _combo.set_no_show_all(true);
    _text.set_no_show_all(true);
    _box.pack_start(_combo, Gtk::PACK_SHRINK);
    _box.pack_start(_text, Gtk::PACK_SHRINK);
    _combo.show();
    _setEditor(_box, _combo);
    _combo.signal_changed().connect(sigc::mem_fun(*this, &NodeChoiceView::_onChanged));
}

void NodeChoiceView::setText(const std::string& text)
{
    _isSetting = true;
    _combo.set_active_text(text);
    _text.set_text(text);
    _isSetting = false;
}

void NodeChoiceView::_updateEditor(bool editable)
{
    _combo.set_visible(editable);
    _text.set_visible(!editable);
}

void NodeChoiceView::_onChanged()
{
    if (_isSetting)
        return;
    signalEdited.emit(_combo.get_active_text().raw());
    signalFinished.emit();
}

} // namespace KesTree
