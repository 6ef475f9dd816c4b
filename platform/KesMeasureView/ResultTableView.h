#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesMeasure/ResultTable.h>

#include <gtkmm/box.h>
#include <gtkmm/button.h>
#include <gtkmm/liststore.h>
#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/treeview.h>

#include <sigc++/sigc++.h>

#include <memory>
#include <string>
#include <vector>

namespace KesMeasure {

/// The results as a table, and the single values below it, with the commands to measure selected rows again
/// and to continue. A verdict has a sign beside its word, so it does not depend on colour. GUI thread.
///
/// The commands are buttons and a menu of the table. The view carries out none of them: it reports what the
/// user wants, and shows what `setTable` gives it next.
class KES_EXPORT ResultTableView : public Gtk::Box, public Kes::IView {
public:
    ResultTableView();

    /// The user wants these rows, counted from 0, or values that count as such, to be measured again. Of the
    /// selected rows those without a result are left out.
    sigc::signal<void(std::vector<std::size_t>)> signalRepeat;
    /// The user wants the rest of the test to be measured.
    sigc::signal<void()> signalContinue;

    /// Shows the table in place of the one so far. Where it is the same table with more rows, or with the
    /// same number of them, lines that have not changed stay as they are, selected or not, and what is new is
    /// brought into sight; a table of another test begins at its top. The last cell of a row is its verdict.
    void setTable(const ResultTable& table);
    /// Why rows cannot be measured again, or the test not be continued, as the tooltip of the command that is
    /// off; empty: it is possible. Without a selected result the first command is off as well, and says so.
    void setCommands(const std::string& whyNotRepeat, const std::string& whyNotContinue);

protected:
    /// A window that has room for it shows the usual number of points at once.
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;

private:
    /// All cells of a line are texts; those of a failed row are bold.
    struct Columns : Gtk::TreeModelColumnRecord {
        explicit Columns(std::size_t count);
        std::vector<Gtk::TreeModelColumn<Glib::ustring>> cells;
        Gtk::TreeModelColumn<int> weight;
    };

    void _followZoom();
    void _createMenu();
    /// The menu comes at the press, before the table changes the selection.
    bool _onButton(GdkEventButton* event);
    bool _showMenu(const GdkEvent* event);
    void _updateCommands();
    /// The selected rows that have a result.
    std::vector<std::size_t> _getSelected() const;
    /// Begins an empty table: columns stay the same for the tests of one program.
    void _setColumns(const std::vector<ResultTable::Column>& columns);
    void _addColumn(const ResultTable::Column& column, std::size_t index);
    void _setRows(const std::vector<ResultTable::Row>& rows);
    void _refill(const std::vector<ResultTable::Row>& rows);
    void _fill(const Gtk::TreeRow& line, const ResultTable::Row& row);
    /// The single values, each with a button when it can be measured again by itself.
    void _setValues(const std::vector<ResultTable::Value>& values);
    Gtk::Button& _makeRepeatButton(const ResultTable::Value& value);

    std::unique_ptr<Columns> _columns;
    Glib::RefPtr<Gtk::ListStore> _store;
    Gtk::TreeView _table;
    Gtk::ScrolledWindow _scroller;
    Gtk::ScrolledWindow _valuesScroller;
    Gtk::Box _values;
    /// Of the values; they live until the values are filled again.
    std::vector<Gtk::Button*> _valueButtons;
    /// What is shown, to find what has changed.
    std::vector<ResultTable::Value> _shownValues;
    std::vector<ResultTable::Column> _shownColumns;
    std::vector<ResultTable::Row> _rows;
    Gtk::Box _commands;
    Gtk::Button _repeat;
    Gtk::Button _continue;
    Gtk::Menu _menu;
    Gtk::MenuItem _repeatItem;
    Gtk::MenuItem _continueItem;
    std::string _whyNotRepeat;
    std::string _whyNotContinue;
};

} // namespace KesMeasure
