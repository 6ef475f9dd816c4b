#include <KesMeasureView/detail/ChartLegend.h>

#include <gtest/gtest.h>

#include <set>

using KesMeasure::Chart;
using KesMeasure::ChartLegend;
using State = KesMeasure::ChartPoint::State;

namespace {

/// In a unit in which a text is 10 high and a letter 6 wide, with a title from 4 to 140.
ChartLegend makeLegend(const std::set<State>& states, double right)
{
    Chart chart;
    chart.expected = {{0.0, 0.0}};
    for (const auto state : states)
        chart.points.push_back({{}, state, {}});
    const auto width = [](const std::string& text) { return 6.0 * double(text.size()); };
    return {chart, width, 10.0, 4.0, 140.0, right};
}

std::set<State> getStates(const ChartLegend& legend)
{
    std::set<State> states;
    for (const auto& entry : legend.getEntries())
        if (entry.state)
            states.insert(*entry.state);
    return states;
}

} // namespace

TEST(ChartLegendTest, StandsClearOfTheTitleAndOfItselfAtEveryWidth)
{
    for (const auto& states :
         std::vector<std::set<State>>{{State::Planned},
                                      {State::Passed, State::Failed},
                                      {State::Planned, State::Passed, State::Failed, State::NotOperated}})
        for (double right = 20.0; right < 900.0; right += 1.0) {
            SCOPED_TRACE(right);
            const auto legend = makeLegend(states, right);
            const ChartLegend::Entry* before = nullptr;
            for (const auto& entry : legend.getEntries()) {
                ASSERT_GE(entry.left, entry.row == 0 ? 150.0 : 4.0);
                ASSERT_LE(entry.right, right + 1e-9);
                ASSERT_LT(entry.left, entry.textLeft);
                if (before && before->row == entry.row) {
                    ASSERT_GT(entry.left, before->right);
                }
                before = &entry;
            }
            // About the width of a chart in the smallest window.
            if (right > 260.0) {
                const auto shown = getStates(legend);
                ASSERT_TRUE(std::includes(shown.begin(), shown.end(), states.begin(), states.end()));
            }
        }
}

TEST(ChartLegendTest, LeavesOutOnlyWhatTheChartDoesNotShow)
{
    const std::set<State> all{State::Planned, State::Passed, State::Failed};
    const auto roomy = makeLegend({State::Planned}, 900.0);
    EXPECT_EQ(roomy.getExtraRows(), 0);
    EXPECT_EQ(roomy.getEntries().size(), 5u);
    EXPECT_EQ(getStates(roomy), all);

    const auto below = makeLegend({State::Planned}, 400.0);
    EXPECT_EQ(below.getExtraRows(), 1);
    EXPECT_EQ(getStates(below), all);

    const auto narrow = makeLegend({State::Planned}, 280.0);
    EXPECT_EQ(narrow.getEntries().size(), 3u);
    EXPECT_EQ(getStates(narrow), std::set<State>{State::Planned});
}
