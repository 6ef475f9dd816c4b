#pragma once

#include <KesCommon/Export.h>
#include <KesCommonView/IView.h>
#include <KesMeasure/ResultTable.h>

#include <gtkmm/box.h>
#include <gtkmm/liststore.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/treeview.h>

namespace KesMeasure {

/// The results as a table, and the single values below it. A verdict has a sign beside its word, so it does
/// not depend on colour. GUI thread.
class KES_EXPORT ResultTableView : public Gtk::Box, public Kes::IView {
public:
    ResultTableView();

    /// Rows that are already shown stay as they are; new ones are brought into sight. The columns are those
    /// of the first call.
    void setTable(const ResultTable& table);

protected:
    /// A window that has room for it shows the usual number of points at once.
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;

private:
    struct Columns : Gtk::TreeModelColumnRecord {
        explicit Columns(std::size_t count);
        std::vector<Gtk::TreeModelColumn<Glib::ustring>> cells;
        Gtk::TreeModelColumn<int> weight;
    };

    void _setColumns(const std::vector<ResultTable::Column>& columns);
    void _addColumn(const ResultTable::Column& column, std::size_t index);
    void _setRows(const std::vector<ResultTable::Row>& rows);
    void _refill(const std::vector<ResultTable::Row>& rows);
    void _fill(const Gtk::TreeRow& line, const ResultTable::Row& row);
    void _setValues(const std::vector<ResultTable::Value>& values);

    std::unique_ptr<Columns> _columns;
    Glib::RefPtr<Gtk::ListStore> _store;
    Gtk::TreeView _table;
    Gtk::ScrolledWindow _scroller;
    Gtk::Box _values;
    std::vector<ResultTable::Row> _rows;
};

} // namespace KesMeasure
