#include <KesCommon/BoundedXmlReader.h>

#include "support/TemporaryHome.h"

#include <gmock/gmock.h>

#include <libxml/tree.h>

#include <ctime>
#include <sys/stat.h>

namespace {

using Kes::BoundedXmlReader;
using testing::HasSubstr;

std::string repeated(std::size_t count, const std::string& text)
{
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += text;
    return result;
}

std::string numbered(std::size_t count, const std::string& before, const std::string& after)
{
    std::string result;
    for (std::size_t i = 0; i < count; ++i)
        result += before + std::to_string(i) + after;
    return result;
}

/// ASCII text as UTF-16, the low byte first or last.
std::string wide(const std::string& text, bool isLittle)
{
    std::string result = isLittle ? "\xff\xfe" : "\xfe\xff";
    for (const char c : text)
        result += isLittle ? std::string{c, '\0'} : std::string{'\0', c};
    return result;
}

std::string textOf(const BoundedXmlReader::Document& document)
{
    xmlChar* const text = xmlNodeGetContent(xmlDocGetRootElement(document.get()));
    const std::string result = reinterpret_cast<const char*>(text);
    xmlFree(text);
    return result;
}

TEST(BoundedXmlReaderTest, ReadsTextsInAnyEncodingWholeWhereverThePiecesEnd)
{
    for (std::size_t length = 4050; length < 4110; ++length) {
        const std::string text =
            repeated(length, "x") + "\r\n<![CDATA[<a>]]>&lt;Ток&#33;<!-- c --><b n='&quot;'/>";
        const auto document =
            BoundedXmlReader().read("\xef\xbb\xbf<?xml version='1.0'?>\n<r>" + text + "</r>\n");
        ASSERT_TRUE(document) << length;
        EXPECT_EQ(textOf(document), repeated(length, "x") + "\n<a><Ток!") << length;
    }
    const std::string paragraph = repeated(200000, "word ");
    for (const bool isLittle : {true, false})
        EXPECT_EQ(textOf(BoundedXmlReader().read(wide("<r>" + paragraph + "</r>", isLittle))), paragraph);
    EXPECT_EQ(
        textOf(BoundedXmlReader().read("<?xml version='1.0' encoding='windows-1251'?><r>\xd2\xee\xea</r>")),
        "Ток");
}

TEST(BoundedXmlReaderTest, WhatIsBeyondALimitIsRefusedAndWhatIsAtItIsRead)
{
    BoundedXmlReader::Limits limits;
    limits.bytes = 20000;
    limits.markup = 6000;
    limits.depth = 5;
    limits.attributes = 4;
    limits.namespaces = 3;
    limits.nodes = 50;
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"too long", "<r>" + std::string(19993, 'x') + "</r>", "<r>" + std::string(19994, 'x') + "</r>"},
        {"a tag", "<r a='" + std::string(5900, 'x') + "'/>", "<r a='" + std::string(15000, 'x') + "'/>"},
        {"a tag", "<r><!--" + std::string(5900, 'x') + "--></r>",
         "<r><!--" + std::string(15000, 'x') + "--></r>"},
        {"too deep", "<a><a><a><a><a/></a></a></a></a>", "<a><a><a><a><a><a/></a></a></a></a></a>"},
        {"too many attributes", "<r" + numbered(4, " a", "=''") + "/>",
         "<r" + numbered(5, " a", "=''") + "/>"},
        {"too many attributes", "<r" + numbered(3, " xmlns:n", "='u'") + " a=''/>",
         "<r" + numbered(3, " xmlns:n", "='u'") + " a='' b=''/>"},
        {"too many namespaces", "<r>" + repeated(3, "<n:a xmlns:n='u'/>") + "</r>",
         "<r>" + repeated(4, "<n:a xmlns:n='u'/>") + "</r>"},
        {"too many nodes", "<r>" + repeated(49, "<a/>") + "</r>", "<r>" + repeated(50, "<a/>") + "</r>"},
        {"too many nodes", "<r>" + repeated(24, "<a b=''/>") + "</r>",
         "<r>" + repeated(25, "<a b=''/>") + "</r>"},
        {"too many nodes", "<r>" + repeated(49, "<?a?>") + "</r>", "<r>" + repeated(50, "<?a?>") + "</r>"},
        {"too many nodes", "<r>" + repeated(49, "<![CDATA[x]]>") + "</r>",
         "<r>" + repeated(50, "<![CDATA[x]]>") + "</r>"},
    };
    BoundedXmlReader reader(limits);
    for (const auto& [error, good, bad] : cases) {
        EXPECT_TRUE(reader.read(good)) << good << "\n" << reader.getError();
        EXPECT_FALSE(reader.read(bad)) << bad;
        EXPECT_THAT(reader.getError(), HasSubstr(error)) << bad;
        EXPECT_TRUE(reader.isRefused()) << bad;
    }
}

TEST(BoundedXmlReaderTest, ADocumentTypeIsRefusedInEveryEncoding)
{
    const std::string bomb = "<!DOCTYPE r [<!ENTITY a \"b\"><!ENTITY c \"&a;&a;\">]><r>&c;</r>";
    for (const auto& text :
         {bomb, "<?xml version='1.0'?><!-- --> " + bomb, wide(bomb, true), wide(bomb, false),
          std::string("<!DOCTYPE r SYSTEM 'file:///etc/hostname'><r/>")}) {
        BoundedXmlReader reader;
        EXPECT_FALSE(reader.read(text));
        EXPECT_EQ(reader.getError(), "a document type");
    }
}

TEST(BoundedXmlReaderTest, BrokenTextIsNoXmlAndSaysWhy)
{
    for (const auto* text : {"", "<", "<r>", "<r></s>", "<r>&a;</r>", "<r a='1' a='2'/>", "<r/><r/>", "text",
                             "<r>\xff\xfe</r>", "<?xml version='1.0' encoding='none'?><r/>"}) {
        BoundedXmlReader reader;
        EXPECT_FALSE(reader.read(text)) << text;
        EXPECT_FALSE(reader.isRefused()) << text;
        EXPECT_NE(reader.getError(), "") << text;
    }
    // Looks like an encoding of four bytes.
    BoundedXmlReader reader;
    EXPECT_FALSE(reader.read(std::string("<\0\0\0/r1", 7)));
    EXPECT_NE(reader.getError(), "");
}

TEST(BoundedXmlReaderTest, HostileTextsTakeAMoment)
{
    const std::string deep = repeated(500000, "<a>");
    for (const auto& text :
         {"<r" + numbered(40000, " a", "=''") + "/>", "<r" + numbered(300000, " a", "=''") + "/>",
          wide("<r" + numbered(100000, " a", "=''") + "/>", true), deep,
          "<r" + numbered(60, " xmlns:n", "='u'") + ">" + repeated(90000, "<n0:a/>") + "</r>",
          "<r>" + repeated(1000000, "<a/>") + "</r>", "<!--" + std::string(4000000, '-'),
          "<r>" + repeated(800000, "&lt;") + "</r>"}) {
        // Of this processor, however busy it is.
        const auto start = std::clock();
        (void)BoundedXmlReader().read(text);
        EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC) << text.substr(0, 40);
    }
}

TEST(BoundedXmlReaderTest, ReadsRegularFilesOnly)
{
    KesTest::TemporaryHome home;
    KesTest::writeFile(home.file("a.xml"), "<r>text</r>");
    BoundedXmlReader reader;
    EXPECT_EQ(textOf(reader.readFile(home.file("a.xml"))), "text");
    ASSERT_EQ(mkfifo(home.file("pipe").c_str(), 0600), 0);
    for (const auto& path : {home.file("missing"), home.file("pipe"), home.getPath().string(),
                             std::string("-"), std::string("/dev/zero")}) {
        EXPECT_FALSE(reader.readFile(path)) << path;
        EXPECT_THAT(reader.getError(), HasSubstr("cannot open")) << path;
    }
}

} // namespace
