#include <Overcurrent/chart/ChartData.h>
#include <Overcurrent/chart/ChartDrawing.h>

#include <cairomm/surface.h>
#include <gmock/gmock.h>
#include <pangomm/init.h>

#include <limits>

using namespace Overcurrent;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<std::string> labelsOf(const LogAxis& axis)
{
    std::vector<std::string> labels;
    for (const auto& tick : axis.getTicks())
        if (tick.hasLabel)
            labels.push_back(tick.label);
    return labels;
}

} // namespace

TEST(LogAxisTest, EndsAtRoundNumbersAroundTheValues)
{
    const LogAxis axis(0.23, 17.2);
    EXPECT_DOUBLE_EQ(axis.getMinimum(), 0.2);
    EXPECT_DOUBLE_EQ(axis.getMaximum(), 20.0);
    EXPECT_THAT(labelsOf(axis), ElementsAre("0.2", "0.5", "1", "2", "5", "10", "20"));
    EXPECT_THAT(labelsOf(LogAxis(0.001, 0.01)), ElementsAre("0.001", "0.002", "0.005", "0.01"));
    EXPECT_THAT(labelsOf(LogAxis::fromExactly(1.0, 21.0)), ElementsAre("1", "2", "5", "10", "20", "50"));
    // 0.2 to 0.9 and 1 to 9, then 10 and 20.
    EXPECT_EQ(axis.getTicks().size(), 8u + 9u + 2u);
}

TEST(LogAxisTest, PlacesValuesByTheirLogarithm)
{
    const LogAxis axis(0.1, 10.0);
    EXPECT_DOUBLE_EQ(axis.toShare(0.1), 0.0);
    EXPECT_DOUBLE_EQ(axis.toShare(1.0), 0.5);
    EXPECT_DOUBLE_EQ(axis.toShare(10.0), 1.0);
    EXPECT_DOUBLE_EQ(axis.toShare(1000.0), 2.0);
    EXPECT_DOUBLE_EQ(axis.toShare(0.0), 0.0);
    EXPECT_DOUBLE_EQ(axis.toShare(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

TEST(LogAxisTest, MakesAnAxisOfAnything)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [least, most] :
         {std::pair(0.0, 1.0), {-1.0, 1.0}, {nan, nan}, {1.0, infinity}, {5.0, 2.0}}) {
        EXPECT_DOUBLE_EQ(LogAxis(least, most).getMinimum(), 1.0);
        EXPECT_DOUBLE_EQ(LogAxis(least, most).getMaximum(), 10.0);
    }
    const LogAxis onePoint(2.0, 2.0);
    EXPECT_LT(onePoint.getMinimum(), onePoint.getMaximum());
}

namespace {

TestResults twoPoints()
{
    TestResults results;
    results.plan.multiples = {2.0, 10.0, 20.0};
    results.points = {{2.0, MeasureState::Measured, std::chrono::milliseconds(10029)},
                      {10.0, MeasureState::Measured, std::chrono::milliseconds(9000)}};
    return results;
}

/// The chart on white, curve grey, passed points green, failed ones red.
class Picture {
public:
    explicit Picture(const ChartData& chart)
        : surface(Cairo::ImageSurface::create(Cairo::FORMAT_RGB24, 800, 600))
    {
        Pango::init();
        const auto cairo = Cairo::Context::create(surface);
        const ChartColours colours{Gdk::RGBA("black"), Gdk::RGBA("white"), Gdk::RGBA("grey"),
                                   Gdk::RGBA("#00ff00"), Gdk::RGBA("#ff0000")};
        ChartDrawing drawing(
            chart, colours,
            [&](const std::string& text) {
                auto layout = Pango::Layout::create(cairo);
                layout->set_text(text);
                return layout;
            },
            800, 600);
        drawing.draw(cairo);
        for (int x = 0; x < 800; ++x)
            for (int y = 40; y < 600; ++y)
                if (const auto point = drawing.findPoint(x, y))
                    found[*point].emplace_back(x, y);
    }

    /// How many pixels around a point have that colour.
    int count(std::size_t point, std::uint32_t colour)
    {
        surface->flush();
        int number = 0;
        for (const auto& [x, y] : found[point]) {
            const auto* row =
                reinterpret_cast<const std::uint32_t*>(surface->get_data() + y * surface->get_stride());
            number += (row[x] & 0xffffffu) == colour;
        }
        return number;
    }

    Cairo::RefPtr<Cairo::ImageSurface> surface;
    std::map<std::size_t, std::vector<std::pair<int, int>>> found;
};

} // namespace

TEST(ChartTest, DrawsPassedAndFailedPointsAsDifferentShapes)
{
    const auto results = twoPoints();
    const auto chart = ChartData::create(results.settings, results.plan, &results);
    ASSERT_EQ(chart.points.size(), 2u);
    EXPECT_TRUE(chart.points[0].isPassed);
    EXPECT_FALSE(chart.points[1].isPassed);
    Picture picture(chart);
    const int circle = picture.count(0, 0x00ff00);
    EXPECT_GT(circle, 20);
    EXPECT_EQ(picture.count(0, 0xff0000), 0);
    // A crossed square is lines with background between them.
    EXPECT_GT(picture.count(1, 0xff0000), 5);
    EXPECT_EQ(picture.count(1, 0x00ff00), 0);
    EXPECT_THAT(chart.describe(), HasSubstr("2 points measured, 1 passed, 1 failed"));
}

TEST(ChartTest, TheCurveLiesWithinItsBandAndTheAxes)
{
    for (const auto curve :
         {CurveKind::StandardInverse, CurveKind::ExtremelyInverse, CurveKind::DefiniteTimeCurve}) {
        RelaySettings settings;
        settings.curve = curve;
        const auto chart = ChartData::create(settings, TestPlan(), nullptr);
        ASSERT_EQ(chart.expected.size(), chart.upper.size());
        ASSERT_EQ(chart.expected.size(), chart.lower.size());
        for (std::size_t i = 0; i < chart.expected.size(); ++i) {
            EXPECT_GT(chart.upper[i].seconds, chart.expected[i].seconds);
            EXPECT_LT(chart.lower[i].seconds, chart.expected[i].seconds);
            EXPECT_GT(chart.lower[i].seconds, 0.0);
        }
        EXPECT_GE(chart.expected.back().seconds, chart.seconds.getMinimum());
        EXPECT_LE(chart.expected.back().multiple, chart.multiples.getMaximum());
    }
}

TEST(ChartTest, APointWithoutOperationStandsAtTheTimeout)
{
    auto results = twoPoints();
    results.points = {{2.0, MeasureState::NoOperation, {}}};
    const auto chart = ChartData::create(results.settings, results.plan, &results);
    EXPECT_DOUBLE_EQ(chart.points[0].position.seconds, results.plan.timeout);
    EXPECT_FALSE(chart.points[0].hasOperated);
    EXPECT_GE(chart.seconds.getMaximum(), results.plan.timeout);
}
