#pragma once

#include <Overcurrent/view/IResultsView.h>

#include <gtkmm/box.h>
#include <gtkmm/grid.h>
#include <gtkmm/liststore.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/treeview.h>

namespace Overcurrent {

/// The results as a table. A verdict has a sign beside its word, so it does not depend on colour. GUI thread.
class ResultsView : public Gtk::Box, public IResultsView {
public:
    ResultsView();

    void setRows(const std::vector<ResultRow>& rows) override;
    void setValues(const std::vector<ResultValue>& values) override;

protected:
    /// A window that has room for it shows the usual number of points at once.
    void get_preferred_height_vfunc(int& minimum, int& natural) const override;

private:
    struct Columns : Gtk::TreeModelColumnRecord {
        Columns();
        Gtk::TreeModelColumn<Glib::ustring> number, multiple, current, expected, measured, deviation,
            deviationPercent, tolerance, verdict;
        Gtk::TreeModelColumn<int> weight;
    };

    void _addColumn(const char* titleKey, const Gtk::TreeModelColumn<Glib::ustring>& column, float alignment);
    void _fill(const Gtk::TreeRow& line, const ResultRow& row);

    Columns _columns;
    Glib::RefPtr<Gtk::ListStore> _store;
    Gtk::TreeView _table;
    Gtk::ScrolledWindow _scroller;
    Gtk::Box _values;
    std::vector<ResultRow> _rows;
};

} // namespace Overcurrent
