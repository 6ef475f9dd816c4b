#include <KesMeasureView/detail/ChartLegend.h>

#include <KesMeasure/MeasureText.h>

#include <algorithm>

namespace KesMeasure {

namespace {

using lng::Measure::get;
using State = ChartPoint::State;

/// In heights of a text.
constexpr double pointRoom = 1.0;
constexpr double curveRoom = 1.9;
constexpr double entryGap = 0.8;

std::vector<ChartLegend::Entry> makeEntries(const Chart& chart)
{
    std::vector<ChartLegend::Entry> entries;
    if (!chart.expected.empty()) {
        entries.push_back({{}, false, get("Chart.expected")});
        entries.push_back({{}, true, get("Chart.band")});
    }
    entries.push_back({State::Planned, false, get("Chart.planned")});
    entries.push_back({State::Passed, false, get("Chart.passed")});
    entries.push_back({State::Failed, false, get("Chart.failed")});
    entries.push_back({State::NotOperated, false, get("Chart.notOperated")});
    return entries;
}

} // namespace

ChartLegend::ChartLegend(const Chart& chart, const std::function<double(const std::string&)>& textWidth,
                         double line, double left, double titleEnd, double right)
    : _line(line)
{
    auto entries = makeEntries(chart);
    for (auto& entry : entries) {
        entry.textLeft = line * (entry.state ? pointRoom : curveRoom);
        entry.right = entry.textLeft + textWidth(entry.text);
    }
    const auto isUnused = [&chart](const Entry& entry) {
        return entry.state &&
               std::none_of(chart.points.begin(), chart.points.end(),
                            [&](const ChartPoint& point) { return point.state == entry.state; });
    };
    // Every test has its verdicts; the other two states are exceptions.
    std::erase_if(entries, [&](const Entry& entry) {
        return isUnused(entry) && (entry.state == State::Planned || entry.state == State::NotOperated);
    });
    const auto room = [&](int row) { return right - (row == 0 ? titleEnd + line : left); };
    if (_place(entries, room, right, 0, 0) || _place(entries, room, right, 1, 1))
        return;
    std::erase_if(entries, isUnused);
    if (!_place(entries, room, right, 0, 0) && !_place(entries, room, right, 1, 1) &&
        !_place(entries, room, right, 0, 1))
        _place(entries, room, right, 0, 2);
}

bool ChartLegend::_place(const std::vector<Entry>& entries, const Room& room, double right, int row,
                         int lastRow)
{
    _entries.clear();
    auto next = entries.begin();
    for (; row <= lastRow && next != entries.end(); ++row) {
        double width = 0.0;
        const auto first = _entries.size();
        for (; next != entries.end(); ++next) {
            const double left = width > 0.0 ? width + _line * entryGap : 0.0;
            if (left + next->right > room(row))
                break;
            width = left + next->right;
            auto& entry = _entries.emplace_back(*next);
            entry.row = row;
            entry.left = left;
        }
        for (auto i = first; i < _entries.size(); ++i) {
            auto& entry = _entries[i];
            entry.left += right - width;
            entry.textLeft += entry.left;
            entry.right += entry.left;
        }
    }
    return next == entries.end();
}

} // namespace KesMeasure
