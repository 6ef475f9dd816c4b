#include <support/GuiTest.h>

#include <KesMeasureView/ChartDrawing.h>
#include <KesMeasureView/ChartView.h>

#include <map>

using namespace KesMeasure;

using ChartViewTest = KesTest::GuiTest;

TEST_F(ChartViewTest, EachPointIsFoundWhereItIsNearestAndAllAreTold)
{
    Chart chart;
    chart.title = "Times";
    chart.x = chart.y = Axis::linear(0.0, 10.0);
    chart.points = {{{5.0, 5.0}, ChartPoint::State::Passed, ""}, {{5.1, 5.0}, ChartPoint::State::Failed, ""}};
    ChartView view;
    view.setChart(chart);
    EXPECT_EQ(view.get_accessible()->get_description(), "Times: 2 points measured, 1 passed, 1 failed.");
    const ChartDrawing drawing(
        chart, {}, [&view](const std::string& text) { return view.create_pango_layout(text); }, 400, 300);
    std::map<std::optional<std::size_t>, int> places;
    for (int x = 0; x < 400; ++x)
        for (int y = 0; y < 300; ++y)
            ++places[drawing.findPoint(x, y)];
    EXPECT_GT(places[0], 100);
    EXPECT_NEAR(places[0], places[1], 50);
}
