#include <KesTreeRelay/RelayNodes.h>

#include <gmock/gmock.h>

namespace {

using KesTree::Node;
namespace RelayNodes = KesTree::RelayNodes;

TEST(RelayNodesTest, StageRefusesSettingsThatContradictEachOther)
{
    const auto stage = RelayNodes::overcurrentStage();
    auto& nominal = *stage->find(RelayNodes::NominalCurrent);
    auto& setting = *stage->find(RelayNodes::SettingCurrent);
    ASSERT_TRUE(setting.setText("4"));
    ASSERT_TRUE(nominal.setText("0,1"));
    EXPECT_FALSE(setting.setText("4.01"));
    ASSERT_TRUE(nominal.setText("1"));
    ASSERT_TRUE(setting.setText("40"));
    EXPECT_FALSE(nominal.setText("0.99"));
    EXPECT_EQ(nominal.getNumber(), 1.0);

    auto& percent = *stage->find(RelayNodes::TolerancePercent);
    auto& milliseconds = *stage->find(RelayNodes::ToleranceMilliseconds);
    ASSERT_TRUE(percent.setText("0"));
    EXPECT_FALSE(milliseconds.setText("0"));
    ASSERT_TRUE(percent.setText("1"));
    EXPECT_TRUE(milliseconds.setText("0"));
}

TEST(RelayNodesTest, OnlyOneOfTheTimesIsUsed)
{
    const auto stage = RelayNodes::overcurrentStage();
    auto& curve = *stage->find(RelayNodes::Curve);
    for (std::size_t i = 0; i < curve.getChoices().size(); ++i) {
        ASSERT_TRUE(curve.setValue(static_cast<long long>(i)));
        const bool definite = i == RelayNodes::DefiniteTimeCurve;
        EXPECT_EQ(stage->find(RelayNodes::DefiniteTime)->isUsed(), definite);
        EXPECT_EQ(stage->find(RelayNodes::TimeMultiplier)->isUsed(), !definite);
    }
    EXPECT_TRUE(RelayNodes::overcurrentStage()->deserialize(stage->serialize()));
}

} // namespace
