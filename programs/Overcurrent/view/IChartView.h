#pragma once

#include <Overcurrent/chart/ChartData.h>

#include <KesCommonView/IView.h>

#include <string>
#include <vector>

namespace Overcurrent {

/// The chart of a test. GUI thread.
class IChartView : public Kes::IView {
public:
    virtual void setChart(const ChartData& chart) = 0;
    /// What a pointer over a measured point tells, one text per point of the chart.
    virtual void setPointTexts(std::vector<std::string> texts) = 0;
};

} // namespace Overcurrent
