#include <KesMeasure/SpreadColumn.h>

#include <KesMeasure/MeasureText.h>

#include <algorithm>

namespace KesMeasure {

void addSpreadColumn(ResultTable& table, const std::string& unit, const std::vector<std::string>& spreads)
{
    using lng::Measure::get;
    const auto measured =
        std::find_if(table.columns.begin(), table.columns.end(),
                     [](const ResultTable::Column& column) { return column.name == "measured"; });
    const std::string ending = unit.empty() ? unit : ", " + unit;
    const auto place = measured - table.columns.begin() + 1;
    measured->title = get("Column.mean") + ending;
    table.columns.insert(measured + 1, {"spread", get("Column.spread") + ending});
    for (std::size_t i = 0; i < table.rows.size(); ++i) {
        auto& cells = table.rows[i].cells;
        cells.insert(cells.begin() + place, spreads[i]);
    }
}

} // namespace KesMeasure
