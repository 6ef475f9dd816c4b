#include <KesMeasure/Chart.h>

#include <KesCommon/StringHelper.h>
#include <KesMeasure/MeasureText.h>

#include <algorithm>

namespace KesMeasure {

std::string Chart::describe() const
{
    const auto count = [this](ChartPoint::State state) {
        return static_cast<std::size_t>(std::count_if(
            points.begin(), points.end(), [state](const ChartPoint& point) { return point.state == state; }));
    };
    const auto passed = count(ChartPoint::State::Passed);
    const auto failed = count(ChartPoint::State::Failed) + count(ChartPoint::State::NotOperated);
    return Kes::StringHelper::format(lng::Measure::get("Chart.description"), title, passed + failed, passed,
                                     failed);
}

} // namespace KesMeasure
