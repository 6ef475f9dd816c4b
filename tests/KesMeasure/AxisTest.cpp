#include <KesMeasure/Axis.h>

#include <gmock/gmock.h>

#include <limits>

using KesMeasure::Axis;
using testing::ElementsAre;

namespace {

/// Of an axis with room for that many labels.
std::vector<std::string> labelsOf(const Axis& axis, double room = 100.0)
{
    std::vector<std::string> labels;
    for (const auto& tick : axis.getTicks(room, [](const std::string&) { return 1.0; }))
        if (!tick.label.empty())
            labels.push_back(tick.label);
    return labels;
}

} // namespace

TEST(AxisTest, EndsAtRoundNumbersAroundTheValues)
{
    const auto axis = Axis::logarithmic(0.23, 17.2);
    EXPECT_THAT(labelsOf(axis), ElementsAre("0.2", "0.5", "1", "2", "5", "10", "20"));
    // 0.2 to 0.9 and 1 to 9, then 10 and 20.
    EXPECT_EQ(axis.getTicks(1.0, [](const std::string&) { return 1.0; }).size(), 8u + 9u + 2u);
}

TEST(AxisTest, ThinsOutLabelsButNotThePowersOfTen)
{
    const auto axis = Axis::logarithmic(0.01, 100.0);
    EXPECT_THAT(labelsOf(axis, 5.0), ElementsAre("0.01", "0.1", "1", "10", "100"));
    EXPECT_THAT(labelsOf(axis, 2.0), ElementsAre("0.01", "1", "100"));
    // More of them on less than a decade.
    EXPECT_THAT(labelsOf(Axis::logarithmic(1.0, 2.0), 4.0), ElementsAre("1", "1.2", "1.5", "2"));
    EXPECT_THAT(labelsOf(Axis::logarithmic(1.0, 5.0), 8.0), ElementsAre("1", "1.5", "2", "3", "4", "5"));
}

TEST(AxisTest, ALinearOneHasRoundNumbersAsCloseAsTheirLabelsAllow)
{
    EXPECT_THAT(labelsOf(Axis::linear(45.0, 55.0), 12.0),
                ElementsAre("45", "46", "47", "48", "49", "50", "51", "52", "53", "54", "55"));
    EXPECT_THAT(labelsOf(Axis::linear(45.0, 55.0), 4.0), ElementsAre("45", "50", "55"));
    EXPECT_THAT(labelsOf(Axis::linear(-0.3, 0.21), 4.0), ElementsAre("-0.2", "0", "0.2"));
    const auto axis = Axis::linear(0.82, 1.13);
    EXPECT_NEAR(axis.getMinimum(), 0.82, 1e-9);
    EXPECT_NEAR(axis.getMaximum(), 1.13, 1e-9);
    EXPECT_DOUBLE_EQ(axis.toShare(axis.getMaximum()), 1.0);
}

TEST(AxisTest, IsMadeOfAnything)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const auto& [least, most] :
         {std::pair(0.0, 1.0), {-1.0, 1.0}, {nan, nan}, {1.0, infinity}, {5.0, 2.0}}) {
        EXPECT_DOUBLE_EQ(Axis::logarithmic(least, most).getMinimum(), 1.0);
        EXPECT_DOUBLE_EQ(Axis::logarithmic(least, most).getMaximum(), 10.0);
    }
    for (const auto& [least, most] : {std::pair(nan, 1.0), {2.0, 1.0}, {0.0, 1e300}, {3.0, 3.0}, {0.0, 0.0}})
        EXPECT_GE(labelsOf(Axis::linear(least, most)).size(), 2u) << least << " to " << most;
}
