#pragma once

#include <KesMeasure/Mark.h>

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace KesMeasure {

/// The results of a test as texts for people: a table with a row for each measurement, and single values
/// beside it. What the window shows, the report prints and files of results hold. A value.
struct ResultTable {
    /// What stands in one column of all rows.
    struct Column {
        /// Stays the same in all languages, such as "expected"; the attribute's name in the report's data.
        std::string name;
        std::string title;
        /// Numbers stand at the right, words at the left.
        bool isNumber = true;
        /// The cells show a band; files have its two ends instead.
        bool isBand = false;
        /// In the window, too; else only where there is room for it: in reports and files.
        bool isInWindow = true;

        bool operator==(const Column&) const = default;
    };
    /// Where a value has to lie, for files: numbers as in cells, empty where there is no band.
    struct Band {
        std::string from;
        std::string to;
        std::string unit;

        bool operator==(const Band&) const = default;
    };
    /// One measurement.
    struct Row {
        /// One for each column.
        std::vector<std::string> cells;
        Mark mark = Mark::None;
        /// Names the row in files, the same in all languages, such as "overvoltage.pickUp".
        std::string id{};
        Band band{};
        /// What files hold in the place of cells in the user's language, by the column's name: the same in all
        /// languages.
        std::map<std::string, std::string> words{};

        bool operator==(const Row&) const = default;
    };
    /// A single value beside the table, such as the drop-off ratio.
    struct Value {
        std::string name;
        std::string value;
        std::string verdict;
        Mark mark = Mark::None;
        /// As that of a row.
        std::string id{};
        /// The number in `value` with its unit and its digits, for files; nothing when it was not measured.
        std::optional<double> number{};
        std::string unit{};
        Band band{};
        /// A measured value that can be measured again by itself counts as a row behind the last one; this
        /// is its number, from 0.
        std::optional<std::size_t> row{};

        bool operator==(const Value&) const = default;
    };

    /// The last one is the verdict: it is shown with the sign of the row's mark.
    std::vector<Column> columns;
    std::vector<Row> rows;
    std::vector<Value> values;
};

} // namespace KesMeasure
