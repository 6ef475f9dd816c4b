#pragma once

#include <KesCommon/Export.h>
#include <KesMeasure/Chart.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace KesMeasure {

/// Where the legend of a chart stands, beside the title of its upright axis or, where that leaves too little
/// room, in lines below the title. Whatever the chart shows comes first: with little room the states that no
/// point has are left out. A value. GUI thread.
class KES_EXPORT ChartLegend {
public:
    /// A sign and its word. No state: the characteristic, or its band.
    struct Entry {
        std::optional<ChartPoint::State> state;
        bool isBand = false;
        std::string text;
        /// The place of the sign's left end and of the word's, and of the line, 0 being the title's.
        double left = 0.0;
        double textLeft = 0.0;
        double right = 0.0;
        int row = 0;
    };

    /// All lengths are in one unit. `line`: the height of a text; the legend may stand between `left` and
    /// `right`, in the title's line only beyond `titleEnd`.
    ChartLegend(const Chart& chart, const std::function<double(const std::string&)>& textWidth, double line,
                double left, double titleEnd, double right);

    /// From left to right, line by line. Lines end at the right. One that fits nowhere is missing.
    const std::vector<Entry>& getEntries() const { return _entries; }

    /// How many lines it takes below the title's.
    int getExtraRows() const { return _entries.empty() ? 0 : _entries.back().row; }

private:
    /// The width that a row has.
    using Room = std::function<double(int row)>;

    /// In the rows from one to another; false, with as many entries as fit, when there are more.
    bool _place(const std::vector<Entry>& entries, const Room& room, double right, int row, int lastRow);

    const double _line;
    std::vector<Entry> _entries;
};

} // namespace KesMeasure
