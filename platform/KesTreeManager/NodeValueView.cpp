#include <KesTreeManager/NodeValueView.h>

#include <KesCommonView/GtkWidgetHelper.h>

#include <atkmm/object.h>

namespace KesTree {

namespace {

constexpr int columnGap = 12;
constexpr int smallGap = 6;
/// So that a problem finds its place when it comes.
constexpr int noteCharacters = 34;

void setUpLabel(Gtk::Label& label, int narrowest, int widest)
{
    label.set_xalign(0.0F);
    label.set_line_wrap(true);
    label.set_width_chars(narrowest);
    label.set_max_width_chars(widest);
}

} // namespace

NodeValueView::NodeValueView(const std::string& name, const std::string& unit)
    : Gtk::Box(Gtk::ORIENTATION_HORIZONTAL, columnGap),
      _name(name),
      _unit(unit),
      _cell(Gtk::ORIENTATION_HORIZONTAL, smallGap),
      _note(Gtk::ORIENTATION_HORIZONTAL, smallGap, noteCharacters)
{
    get_style_context()->add_class("kes-node-value");
    setUpLabel(_name, 12, 34);
    auto& nameColumn = *Gtk::make_managed<Kes::SharedSizeGroup>("name");
    nameColumn.add(_name);
    pack_start(nameColumn, Gtk::PACK_SHRINK);

    _unit.set_xalign(0.0F);
    _unit.set_no_show_all(unit.empty());
    auto& editorColumn = *Gtk::make_managed<Kes::SharedSizeGroup>("editor");
    editorColumn.add(_cell);
    pack_start(editorColumn, Gtk::PACK_SHRINK);

    _problemIcon.set_no_show_all(true);
    setUpLabel(_noteText, 14, 60);
    _note.get_style_context()->add_class("kes-node-note");
    _note.pack_start(_problemIcon, Gtk::PACK_SHRINK);
    _note.pack_start(_noteText, Gtk::PACK_EXPAND_WIDGET);
    // Rows whose columns all ask for the same widths stay aligned when there is not enough room.
    auto& noteColumn = *Gtk::make_managed<Kes::SharedSizeGroup>("note");
    noteColumn.add(_note);
    pack_start(noteColumn, Gtk::PACK_EXPAND_WIDGET);
}

void NodeValueView::_setEditor(Gtk::Widget& editor, Gtk::Widget& focus)
{
    _focus = &focus;
    _cell.set_valign(Gtk::ALIGN_CENTER);
    _cell.pack_start(editor, Gtk::PACK_SHRINK);
    _cell.pack_start(_unit, Gtk::PACK_SHRINK);
    _name.set_mnemonic_widget(focus);
    const auto name = _name.get_text();
    Kes::GtkWidgetHelper::setAccessibleName(focus,
                                            _unit.get_text().empty() ? name : name + ", " + _unit.get_text());
    show_all();
    _updateNote();
}

void NodeValueView::setHint(const std::string& hint)
{
    _hintText = hint;
    _updateNote();
}

void NodeValueView::setProblem(const std::string& problem)
{
    _problemText = problem;
    _updateNote();
}

void NodeValueView::_updateNote()
{
    const auto& text = _hasProblem() ? _problemText : _hintText;
    _noteText.set_text(text);
    _problemIcon.set_visible(_hasProblem());
    for (const auto& style : {_note.get_style_context(), _focus->get_style_context()}) {
        if (_hasProblem())
            style->add_class("error");
        else
            style->remove_class("error");
    }
    // That it is not used is shown by its being off.
    _focus->get_accessible()->set_description(_isUsed || _hasProblem() ? text : std::string());
}

void NodeValueView::setIsUsed(bool used)
{
    _isUsed = used;
    _name.set_sensitive(used);
    _cell.set_sensitive(used);
    _updateEditor(_isUsed && !_isReadOnly);
    _updateNote();
}

void NodeValueView::setIsReadOnly(bool readOnly)
{
    _isReadOnly = readOnly;
    _updateEditor(_isUsed && !_isReadOnly);
}

} // namespace KesTree
