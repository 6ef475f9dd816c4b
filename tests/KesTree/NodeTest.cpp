#include <KesTree/Node.h>
#include <KesTree/ValueError.h>

#include <KesCommon/Language.h>
#include <KesCommon/NumberText.h>

#include <glibmm/ustring.h>
#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace {

using KesTree::Node;
using testing::HasSubstr;

constexpr double infinity = std::numeric_limits<double>::infinity();

std::unique_ptr<Node> current()
{
    return Node::number("is", {"Setting current", "Ток уставки"}, {"A", "А"}, 5.0, 0.05, 100.0);
}

std::string messageOf(const Kes::Result& result)
{
    return result || !result.getError() ? std::string() : result.getError()->getMessage();
}

class NodeTest : public testing::Test {
protected:
    ~NodeTest() override { lng::language = lng::English; }
};

TEST_F(NodeTest, NumbersAreReadAsUsersTypeThem)
{
    const struct {
        const char* text;
        double value;
    } cases[] = {{"1.5", 1.5},   {"1,5", 1.5}, {" 2 ", 2},  {"+3", 3},     {"5 A", 5}, {"5 A", 5}, {"5А", 5},
                 {"0.05", 0.05}, {"100", 100}, {"1e1", 10}, {"5e-1A", .5}, {".5", .5}, {"007", 7}};
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
        EXPECT_THAT(messageOf(result), HasSubstr("0.05 … 100 A")) << text;
        EXPECT_TRUE(Glib::ustring(messageOf(result)).validate());
        EXPECT_EQ(node->getNumber(), 5.0);
    }
    const auto node = current();
    EXPECT_EQ(messageOf(node->setText("abc")),
              "Setting current: “abc” is not a number; allowed: 0.05 … 100 A");
    EXPECT_EQ(messageOf(node->setText("100,01")),
              "Setting current: 100.01 A is outside the range 0.05 … 100 A");
    lng::language = lng::Russian;
    EXPECT_EQ(messageOf(node->setText("0")), "Ток уставки: 0 А вне диапазона 0,05 … 100 А");
    EXPECT_EQ(messageOf(node->setText("1 A B")), "Ток уставки: «1 A B» — не число; допустимо: 0,05 … 100 А");
    ASSERT_TRUE(node->setText("2.5"));
    EXPECT_EQ(node->toText(), "2,5");
    EXPECT_TRUE(node->setText(node->toText()));
    EXPECT_THAT(messageOf(node->setText(std::string(5000, 'x'))), testing::SizeIs(testing::Lt(200U)));
    const auto error = std::dynamic_pointer_cast<KesTree::ValueError>(node->setText("0").getError());
    ASSERT_TRUE(error);
    EXPECT_EQ(error->getReason(), "0 А вне диапазона 0,05 … 100 А");
}

TEST_F(NodeTest, ValuesOfAnotherTypeOrNotFiniteAreRefused)
{
    const auto number = current();
    for (const Node::Value& value : {Node::Value(), Node::Value(true), Node::Value(std::string("5")),
                                     Node::Value(infinity), Node::Value(std::nan(""))})
        EXPECT_FALSE(number->setValue(value));
    EXPECT_TRUE(number->setValue(7));
    EXPECT_EQ(number->getNumber(), 7.0);

    const auto whole = Node::integer("n", {"Count", "Число"}, {}, 3, -5, 8);
    EXPECT_FALSE(whole->setValue(2.0));
    EXPECT_FALSE(whole->setText("2.5"));
    EXPECT_FALSE(whole->setText("9"));
    EXPECT_FALSE(whole->setText("99999999999999999999"));
    EXPECT_TRUE(whole->setText("-5"));
    EXPECT_EQ(whole->getInteger(), -5);
    EXPECT_THROW(whole->getNumber(), std::bad_variant_access);

    const auto choice = Node::choice("c", {"Curve", "Кривая"}, {{"one", "один"}, {"two", "два"}}, 1);
    EXPECT_FALSE(choice->setValue(2));
    EXPECT_FALSE(choice->setValue(-1));
    EXPECT_FALSE(choice->setText("three"));
    EXPECT_TRUE(choice->setText("one"));
    EXPECT_EQ(choice->getChoice(), 0U);
    lng::language = lng::Russian;
    EXPECT_EQ(choice->toText(), "один");

    const auto text = Node::text("t", {"Note", "Заметка"}, "");
    EXPECT_FALSE(text->setText("\xc3\x28"));
    EXPECT_FALSE(text->setText(std::string("a\0b", 3)));
    EXPECT_TRUE(text->setText("Ячейка №3\n\t<&>"));
    EXPECT_FALSE(Node::group("g", {"G", "Г"})->setText("1"));
}

TEST_F(NodeTest, MakersRefuseWhatMakesNoSense)
{
    EXPECT_THROW(Node::number("a", {}, {}, 5, 6, 10), std::invalid_argument);
    EXPECT_THROW(Node::number("a", {}, {}, 5, 10, 1), std::invalid_argument);
    EXPECT_THROW(Node::number("a", {}, {}, std::nan(""), -infinity, infinity), std::invalid_argument);
    EXPECT_THROW(Node::number("a", {}, {}, 1, std::nan(""), 2), std::invalid_argument);
    EXPECT_THROW(Node::integer("a", {}, {}, 0, 0, std::numeric_limits<long long>::max()),
                 std::invalid_argument);
    EXPECT_THROW(Node::choice("a", {}, {}, 0), std::invalid_argument);
    for (const char* id : {"", "a/b", "a b", "ж"})
        EXPECT_THROW(Node::group(id, {}), std::invalid_argument) << id;

    const auto group = Node::group("g", {});
    group->add(Node::boolean("a", {}, true));
    EXPECT_THROW(group->add(Node::boolean("a", {}, true)), std::invalid_argument);
    EXPECT_THROW(group->add(nullptr), std::invalid_argument);
    EXPECT_THROW(group->find("a")->add(Node::group("b", {})), std::invalid_argument);
}

TEST_F(NodeTest, RangeTextsLeaveOutMissingBounds)
{
    const auto range = [](double minimum, double maximum) {
        return Node::number("a", {}, {"s", "с"}, 5, minimum, maximum)->getRangeText();
    };
    EXPECT_EQ(range(0, 10), "0 … 10 s");
    EXPECT_EQ(range(0, infinity), "≥ 0 s");
    EXPECT_EQ(range(-infinity, 10), "≤ 10 s");
    EXPECT_EQ(range(-infinity, infinity), "");
    EXPECT_EQ(Node::boolean("a", {}, true)->getRangeText(), "");
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

    EXPECT_EQ(root->find("inner/is"), &leaf);
    EXPECT_EQ(root->find(""), root.get());
    for (const char* path : {"is", "inner/", "inner//is", "inner/is/x", "/inner"})
        EXPECT_TRUE(!root->find(path) || std::string(path) == "inner/") << path;
}

TEST_F(NodeTest, ValidationSeesTheNewValueAndNamesTheNode)
{
    const auto node = current();
    node->setValidation([](const Node::Value& value) {
        return std::get<double>(value) == 13.0 ? Kes::Result::failure("unlucky") : Kes::Result(true);
    });
    EXPECT_EQ(messageOf(node->setText("13")), "Setting current: unlucky");
    EXPECT_FALSE(node->checkText("13"));
    EXPECT_EQ(messageOf(node->setText("1300")), "Setting current: 1300 A is outside the range 0.05 … 100 A");
    EXPECT_TRUE(node->setText("12"));
    node->setValidation([](const Node::Value&) { return Kes::Result(false); });
    EXPECT_EQ(messageOf(node->setText("1")), "Setting current: the value is refused");
}

TEST(NumberTextTest, WritesTheShortestTextThatReadsBack)
{
    const struct {
        double value;
        const char* text;
    } cases[] = {{0.1, "0.1"},
                 {-0.0, "0"},
                 {100, "100"},
                 {1e-4, "0.0001"},
                 {1e14, "100000000000000"},
                 {1e15, "1e+15"},
                 {1e-7, "1e-07"},
                 {0.1 + 0.2, "0.30000000000000004"}};
    for (const auto& [value, text] : cases)
        EXPECT_EQ(Kes::NumberText::write(value), text);
    for (const double value : {5e-324, 1.7976931348623157e308, -2.2250738585072014e-308, 1.0 / 3.0})
        EXPECT_EQ(Kes::NumberText::read(Kes::NumberText::write(value)), value);
    EXPECT_FALSE(Kes::NumberText::read(Kes::NumberText::write(infinity)));
}

} // namespace
