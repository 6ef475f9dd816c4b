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
}

} // namespace
