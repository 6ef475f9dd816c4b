#include <KesTree/Node.h>

#include <KesCommon/Language.h>
#include <KesCommon/ObjectErrorHelper.h>

#include <gmock/gmock.h>

namespace {

using KesTree::Node;
using testing::HasSubstr;

std::unique_ptr<Node> sample()
{
    auto root = Node::group("root", {"Test.root", "Root", "Корень"});
    auto& inner = root->add(Node::group("inner", {"Test.inner", "Inner", "Внутри"}));
    inner.add(Node::number("number", {"Test.number", "Number", "Число"}, lng::Unit::ampere, 0.1, 0, 10));
    inner.add(Node::integer("whole", {"Test.whole", "Whole", "Целое"}, {}, -3, -5, 5));
    root->add(Node::boolean("flag", {"Test.flag", "Flag", "Флаг"}, true));
    root->add(Node::choice("choice", {"Test.choice", "Choice", "Выбор"},
                           {{"Test.a", "a", "а"}, {"Test.b", "b", "б"}, {"Test.c", "c", "в"}}, 2));
    root->add(Node::text("note", {"Test.note", "Note", "Заметка"}, ""));
    return root;
}

const std::string& written()
{
    static const std::string text = R"(<?xml version="1.0" encoding="UTF-8"?>
<tree version="1">
  <group id="root">
    <group id="inner">
      <value id="number">0.1</value>
      <value id="whole">-3</value>
    </group>
    <value id="flag">true</value>
    <value id="choice">2</value>
    <value id="note"></value>
  </group>
</tree>
)";
    return text;
}

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    const auto place = text.find(what);
    EXPECT_NE(place, std::string::npos) << what;
    return text.replace(place, what.size(), by);
}

std::string textOf(const Kes::Result& result)
{
    return Kes::ObjectErrorHelper::toDisplayString({result.getError()});
}

TEST(NodeXmlTest, WritesTheSameBytesWhateverTheLanguage)
{
    const auto english = sample()->serialize();
    lng::language = lng::Russian;
    const auto russian = sample()->serialize();
    lng::language = lng::English;
    EXPECT_EQ(english, russian);
    EXPECT_EQ(english, written());
}

TEST(NodeXmlTest, ReadsBackEveryValue)
{
    for (const std::string note :
         {"", "plain", " blanks around ", "line\nline\r\n\ttab", "<&>\"'", "Ячейка №3 ]]>", "\n"}) {
        const auto from = sample();
        ASSERT_TRUE(from->find("note")->setText(note));
        ASSERT_TRUE(from->find("inner/number")->setValue(1.0 / 3.0));
        ASSERT_TRUE(from->find("flag")->setValue(false));
        const auto to = sample();
        const auto result = to->deserialize(from->serialize());
        ASSERT_TRUE(result) << textOf(result);
        EXPECT_EQ(to->serialize(), from->serialize());
    }
}

TEST(NodeXmlTest, ATreeFromBeforeThereWasAValueIsComplete)
{
    const auto tree = sample();
    auto& later = tree->add(Node::text("later", {"Test.later", "Later", "Позже"}, "at first"));
    EXPECT_FALSE(tree->deserialize(written()));
    later.setIsLater();
    ASSERT_TRUE(later.setText("of another tree"));
    ASSERT_TRUE(tree->deserialize(tree->serialize()));
    EXPECT_EQ(later.getText(), "of another tree") << "what is written counts";
    const auto result = tree->deserialize(written());
    ASSERT_TRUE(result) << textOf(result);
    EXPECT_EQ(later.getText(), "at first");
    // What is incomplete keeps the other values when it is allowed.
    const std::string partial =
        R"(<tree version="1"><group id="root"><value id="choice">1</value></group></tree>)";
    ASSERT_TRUE(later.setText("kept") && tree->find("flag")->setValue(false));
    EXPECT_FALSE(tree->deserialize(partial));
    EXPECT_TRUE(tree->deserialize(partial, false));
    EXPECT_EQ(later.getText(), "kept");
    EXPECT_EQ(tree->find("choice")->getChoice(), 1U);
    EXPECT_FALSE(tree->find("flag")->getBoolean());
}

TEST(NodeXmlTest, DamageIsRefusedAndChangesNothing)
{
    std::string deep, ends;
    for (int i = 0; i < 300000; ++i) {
        deep += "<group id=\"root\">";
        ends += "</group>";
    }
    const std::string bomb =
        R"(<!DOCTYPE tree [<!ENTITY a "aaaaaaaaaa"><!ENTITY b "&a;&a;&a;&a;&a;&a;&a;&a;">]>)";
    const struct {
        const char* name;
        std::string xml;
        const char* text;
    } cases[] = {
        {"empty", "", "not well-formed"},
        {"no version", replaced(written(), " version=\"1\">\n", ">\n"), "not those of a test object"},
        {"newer", replaced(written(), "tree version=\"1\"", "tree version=\"2\""),
         "newer program (version “2”)"},
        {"unknown id", replaced(written(), "\"whole\"", "\"hole\""), "Unknown item “hole”"},
        {"twice", replaced(written(), "\"whole\">-3", "\"number\">1"), "“number” is given twice"},
        {"missing", replaced(written(), "    <value id=\"flag\">true</value>\n", ""), "“flag” is missing"},
        {"out of range", replaced(written(), "0.1", "10.5"), "Number: 10.5 A is outside the range 0 … 10 A"},
        {"choice", replaced(written(), ">2<", ">3<"), "no choice with this number"},
        {"document type", replaced(written(), "<tree", bomb + "<tree"), "not those of a test object"},
        {"deep", "<tree version=\"1\">" + deep + ends + "</tree>", "not those of a test object"},
        {"huge", std::string(std::size_t{17} << 20, ' '), "not those of a test object"},
    };
    for (const auto& [name, xml, text] : cases) {
        SCOPED_TRACE(name);
        const auto node = sample();
        ASSERT_TRUE(node->find("flag")->setValue(false));
        ASSERT_TRUE(node->find("inner/number")->setValue(9));
        const auto before = node->serialize();
        int changes = 0;
        node->signalChanged.connect([&](Node&) { ++changes; });
        const auto result = node->deserialize(xml);
        EXPECT_FALSE(result);
        EXPECT_THAT(textOf(result), HasSubstr(text));
        EXPECT_EQ(node->serialize(), before);
        EXPECT_EQ(changes, 0);
    }
    for (std::size_t length = 0; length < written().size() - 2; ++length)
        EXPECT_FALSE(sample()->deserialize(written().substr(0, length))) << length;
}

TEST(NodeXmlTest, RulesBetweenValuesSeeAllNewValuesInPlace)
{
    const auto make = [](double low, double high) {
        auto root = Node::group("root", {"Test.root", "Root", "Корень"});
        auto& first = root->add(Node::number("low", {"Test.low", "Low", "Низ"}, {}, low, 0, 100));
        auto& second = root->add(Node::number("high", {"Test.high", "High", "Верх"}, {}, high, 0, 100));
        first.setValidation([&second](const Node::Value& value) {
            return std::get<double>(value) < second.getNumber() ? Kes::Result(true)
                                                                : Kes::Result::failure("not below");
        });
        second.setValidation([&first](const Node::Value& value) {
            return first.getNumber() < std::get<double>(value) ? Kes::Result(true)
                                                               : Kes::Result::failure("not above");
        });
        return root;
    };
    // Neither order of single steps would lead from (1, 2) to (10, 20) and back.
    const auto node = make(1, 2);
    EXPECT_TRUE(node->deserialize(make(10, 20)->serialize()));
    EXPECT_TRUE(node->deserialize(make(1, 2)->serialize()));
    EXPECT_EQ(node->find("high")->getNumber(), 2.0);
    EXPECT_THAT(textOf(node->deserialize(make(20, 10)->serialize())), HasSubstr("Low: not below"));
    EXPECT_EQ(node->find("low")->getNumber(), 1.0);
}

} // namespace
