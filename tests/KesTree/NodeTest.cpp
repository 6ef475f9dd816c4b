#include <KesTree/Node.h>
#include <KesTreeRelay/RelayNodes.h>
#include <KesTreeRelay/VoltageFrequencyNodes.h>

#include "support/Message.h"

#include <KesCommon/Language.h>
#include <KesCommon/NumberText.h>

#include <glibmm/ustring.h>
#include <gmock/gmock.h>

#include <cmath>

namespace {

using KesTest::message;
using KesTree::Node;
using testing::HasSubstr;

constexpr double infinity = std::numeric_limits<double>::infinity();

std::unique_ptr<Node> current()
{
    return Node::number("is", {"Test.settingCurrent", "Setting current", "Ток уставки"}, lng::Unit::ampere,
                        5.0, 0.05, 100.0);
}

class NodeTest : public testing::Test {
protected:
    ~NodeTest() override { lng::language = lng::English; }
};

TEST_F(NodeTest, NumbersAreReadAsUsersTypeThem)
{
    const std::pair<const char*, double> cases[] = {{"1.5", 1.5},  {"1,5", 1.5},    {" 2 ", 2}, {"+3", 3},
                                                    {"5 A", 5},    {"5\u00a0A", 5}, {"5А", 5},  {"1e1", 10},
                                                    {"5e-1A", .5}, {".5", .5},      {"007", 7}};
    for (const auto& [text, value] : cases) {
        const auto node = current();
        EXPECT_TRUE(node->setText(text)) << text;
        EXPECT_EQ(node->getNumber(), value) << text;
    }
}

TEST_F(NodeTest, NonsenseIsRefusedWithNodeValueUnitAndRange)
{
    for (const char* text : {"", " ", "abc", "1.2.3", "1,2,3", "1 000", "inf", "nan", "0x10", "1e999",
                             "1e-999", "-", "+-1", "++1", "e5", "5 V", "5 AA", "\xff\xfe", "1\n2"}) {
        const auto node = current();
        const auto result = node->setText(text);
        EXPECT_FALSE(result) << text;
        EXPECT_THAT(message(result), HasSubstr("0.05 … 100 A")) << text;
        EXPECT_TRUE(Glib::ustring(message(result)).validate());
        EXPECT_EQ(node->getNumber(), 5.0);
    }
    const auto node = current();
    EXPECT_EQ(message(node->setText("abc")), "Setting current: “abc” is not a number; allowed: 0.05 … 100 A");
    EXPECT_EQ(message(node->setText("100,01")),
              "Setting current: 100.01 A is outside the range 0.05 … 100 A");
    lng::language = lng::Russian;
    EXPECT_EQ(message(node->setText("0")), "Ток уставки: 0 А вне диапазона 0,05 … 100 А");
    EXPECT_THAT(message(node->setText(std::string(5000, 'x'))), testing::SizeIs(testing::Lt(200U)));
    const auto rangeFrom = [](double minimum, double maximum) {
        return Node::number("r", {}, lng::Unit::ampere, 1.0, minimum, maximum)->getRangeText();
    };
    EXPECT_EQ(rangeFrom(0.5, infinity), "≥\u00a00,5\u00a0А");
    EXPECT_EQ(rangeFrom(-infinity, 5.0), "≤\u00a05\u00a0А");
    EXPECT_EQ(rangeFrom(-infinity, infinity), "");
}

TEST_F(NodeTest, ValuesOfAnotherTypeOrNotFiniteAreRefused)
{
    for (const auto& number : {current(), Node::number("x", {}, {}, 1.0, -infinity, infinity)})
        for (const Node::Value& value : {Node::Value(), Node::Value(true), Node::Value(std::string("5")),
                                         Node::Value(infinity), Node::Value(std::nan(""))})
            EXPECT_FALSE(number->setValue(value));

    const auto whole = Node::integer("n", {"Test.count", "Count", "Число"}, {}, 3, -5, 8);
    EXPECT_FALSE(whole->setValue(2.0));
    EXPECT_FALSE(whole->setText("2.5"));
    EXPECT_FALSE(whole->setText("99999999999999999999"));
    EXPECT_TRUE(whole->setText("-5"));
    EXPECT_EQ(whole->getInteger(), -5);

    const auto choice = Node::choice("c", {"Test.curve", "Curve", "Кривая"},
                                     {{"Test.one", "one", "один"}, {"Test.two", "two", "два"}}, 1);
    EXPECT_FALSE(choice->setValue(2));
    EXPECT_FALSE(choice->setText("three"));
    EXPECT_TRUE(choice->setText("one"));
    EXPECT_EQ(choice->getChoice(), 0U);

    const auto text = Node::text("t", {"Test.note", "Note", "Заметка"}, "");
    EXPECT_FALSE(text->setText("\xc3\x28"));
    EXPECT_FALSE(text->setText(std::string("a\0b", 3)));
}

TEST_F(NodeTest, ChangesAreToldUpTheTreeAndOnlyWhenReal)
{
    const auto root = Node::group("root", {});
    auto& inner = root->add(Node::group("inner", {}));
    auto& leaf = inner.add(current());
    auto& other = root->add(Node::boolean("other", {}, false));
    std::vector<std::string> heard;
    root->signalChanged.connect([&](Node& node) { heard.push_back("root:" + node.getId()); });
    inner.signalChanged.connect([&](Node& node) { heard.push_back("inner:" + node.getId()); });

    EXPECT_TRUE(leaf.setText("5.0"));
    EXPECT_FALSE(leaf.setText("500"));
    EXPECT_TRUE(leaf.checkText("6"));
    EXPECT_TRUE(heard.empty());
    EXPECT_TRUE(leaf.setText("6"));
    EXPECT_TRUE(other.setText("yes"));
    EXPECT_THAT(heard, testing::ElementsAre("inner:is", "root:is", "root:other"));
}

TEST(NumberTextTest, ReadsBackEveryNumberItWrites)
{
    for (const double value : {5e-324, 1.7976931348623157e308, -2.2250738585072014e-308, 1.0 / 3.0})
        EXPECT_EQ(Kes::NumberText::read(Kes::NumberText::write(value)), value);
    EXPECT_FALSE(Kes::NumberText::read(Kes::NumberText::write(infinity)));
}

TEST(RelayNodesTest, StageRefusesSettingsThatContradictEachOther)
{
    const auto stage = KesTree::RelayNodes::overcurrentStage();
    auto& nominal = *stage->find(KesTree::RelayNodes::NominalCurrent);
    auto& setting = *stage->find(KesTree::RelayNodes::SettingCurrent);
    ASSERT_TRUE(setting.setText("4"));
    ASSERT_TRUE(nominal.setText("0,1"));
    EXPECT_FALSE(setting.setText("4.01"));
    ASSERT_TRUE(nominal.setText("1"));
    ASSERT_TRUE(setting.setText("40"));
    EXPECT_FALSE(nominal.setText("0.99"));
    EXPECT_EQ(nominal.getNumber(), 1.0);
}

} // namespace

TEST(RelayNodesTest, ValuesOfAStageThatIsNotUsedPlayNoPart)
{
    namespace Nodes = KesTree::VoltageFrequencyNodes;
    const auto relay = Nodes::voltageFrequencyRelay();
    auto& stage = *relay->find(Nodes::Undervoltage);
    auto& used = *stage.find(Nodes::StageUsed);
    ASSERT_TRUE(used.setValue(false));
    EXPECT_TRUE(used.isUsed());
    for (const auto& value : stage.getChildren())
        EXPECT_EQ(value->isUsed(), value.get() == &used) << value->getId();
    EXPECT_TRUE(relay->find(Nodes::Overvoltage)->find(Nodes::StageSetting)->isUsed());
    ASSERT_TRUE(stage.find(KesTree::RelayNodes::TolerancePercent)->setValue(0.0));
    EXPECT_FALSE(stage.find(KesTree::RelayNodes::ToleranceMilliseconds)->setValue(0.0))
        << "no time hits exactly";
}

TEST_F(NodeTest, ATableIsWrittenInTheLanguageOfTheUserAndRefusedByItsPair)
{
    namespace Nodes = KesTree::RelayNodes;
    const auto relay = Nodes::overcurrentStage();
    auto& table = *relay->find(std::string(Nodes::OvercurrentStages[0]) + "/" + Nodes::StageTable);
    const auto& stage = *relay->find(Nodes::OvercurrentStages[0]);
    EXPECT_TRUE(!table.isUsed() && stage.find(Nodes::StageMultiplier)->isUsed());
    ASSERT_TRUE(stage.find(Nodes::StageCurve)->setValue(static_cast<long long>(Nodes::TableCurve)));
    EXPECT_TRUE(table.isUsed() && !stage.find(Nodes::StageMultiplier)->isUsed());
    EXPECT_TRUE(table.setText("2:5; 3:5")) << "the same time is not longer";
    for (const char* text : {"1.5:3.25;4:1", " 1,5 : 3,25 ; 4:1; "}) {
        ASSERT_TRUE(table.setText(text)) << text;
        EXPECT_EQ(table.getText(), "1.5:3.25; 4:1");
    }
    lng::language = lng::Russian;
    EXPECT_EQ(table.toText(), "1,5:3,25; 4:1");
    lng::language = lng::English;
    const std::pair<const char*, const char*> cases[] = {
        {"2:10", "between 2 and 50 pairs"},
        {"2:10; 5", "“5” is not a pair"},
        {"2:10; ; 5:1", "“” is not a pair"},
        {"2:10; 5:1:1", "“5:1:1” is not a pair"},
        {"0.9:10; 5:1", "“0.9:10”: the multiple must lie between 1 and 100"},
        {"2:10; 5:0", "“5:0”: the time must lie"},
        {"2:10; 2:9", "“2:9”: its multiple must be larger"},
        {"2:10; 5:9; 6:9.1", "“6:9.1”: its time must not be longer"},
    };
    for (const auto& [text, reason] : cases) {
        EXPECT_THAT(message(table.setText(text)), HasSubstr(reason)) << text;
        EXPECT_EQ(table.getText(), "1.5:3.25; 4:1");
    }
}

TEST(RelayNodesTest, OneStageIsInUseAtLeastAndSuitsTheNominalCurrent)
{
    namespace Nodes = KesTree::RelayNodes;
    const auto relay = Nodes::overcurrentStage();
    const auto of = [&](std::size_t stage, const char* id) -> Node& {
        return *relay->find(std::string(Nodes::OvercurrentStages[stage]) + "/" + id);
    };
    EXPECT_FALSE(of(0, Nodes::StageUsed).setValue(false));
    EXPECT_FALSE(of(3, Nodes::StageSetting).isUsed());
    ASSERT_TRUE(of(3, Nodes::StageUsed).setValue(true));
    EXPECT_TRUE(of(3, Nodes::StageSetting).isUsed());
    ASSERT_TRUE(of(0, Nodes::StageUsed).setValue(false));
    // That of a stage which is not in use does not matter.
    ASSERT_TRUE(relay->find(Nodes::NominalCurrent)->setValue(0.1));
    EXPECT_FALSE(of(2, Nodes::StageUsed).setValue(true)) << "50 A are too much for a relay of 0.1 A";
    EXPECT_FALSE(relay->find(Nodes::CharacteristicAngle)->isUsed());
    ASSERT_TRUE(of(3, Nodes::StageDirection).setValue(1LL));
    EXPECT_TRUE(relay->find(Nodes::CharacteristicAngle)->isUsed());
}
