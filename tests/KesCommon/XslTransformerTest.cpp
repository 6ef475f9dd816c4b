#include <KesCommon/XslTransformer.h>

#include "support/LoggedTexts.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>

#include <giomm/init.h>
#include <giomm/socketservice.h>

using KesTest::readFile;
using KesTest::writeFile;

namespace {

auto Logs(const std::string& text)
{
    return testing::Contains(testing::HasSubstr(text));
}

class XslTransformerTest : public testing::Test {
protected:
    /// `more` goes beside the template of the stylesheet; `p` is the parameter of that name.
    bool transform(const std::string& xml, const std::string& body, const std::string& more = "",
                   const std::string& p = "")
    {
        writeFile(home.file("in.xml"), xml);
        writeFile(home.file("style.xsl"),
                  R"(<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
            xmlns:exsl="http://exslt.org/common" xmlns:math="http://exslt.org/math" extension-element-prefixes="exsl">
            <xsl:output method="text" encoding="UTF-8"/>)" +
                      more + "<xsl:template match=\"/\">" + body + "</xsl:template></xsl:stylesheet>");
        const auto in = home.file("in.xml");
        Kes::XslTransformer transformer(in.c_str(), home.file("style.xsl").c_str(), output.c_str());
        transformer.setParameter("p", p);
        return transformer.transform();
    }

    KesTest::TemporaryHome home;
    std::string output = home.file("report.txt");
    KesTest::LoggedTexts log;
};

TEST_F(XslTransformerTest, replacesTheOldResultAndTakesParametersLiterally)
{
    writeFile(output, "an older and longer report");
    writeFile(home.file("part.xsl"),
              "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
              "<xsl:template name='part'>included</xsl:template></xsl:stylesheet>");
    EXPECT_TRUE(transform("<r>Ток</r>",
                          "<xsl:value-of select='r'/><xsl:value-of select='math:sqrt(9)'/>"
                          "<xsl:value-of select='$p'/><xsl:call-template name='part'/>",
                          "<xsl:include href='part.xsl'/><xsl:param name='p'/>", "it's \"quoted\" & 1 + 1"));
    EXPECT_EQ(readFile(output), "Ток3it's \"quoted\" & 1 + 1included");
    EXPECT_TRUE(transform("<r/>", ""));
    EXPECT_EQ(readFile(output), "");
    EXPECT_THAT(log.take(), testing::IsEmpty());
}

TEST_F(XslTransformerTest, aFailureKeepsTheOldFileAndIsLogged)
{
    writeFile(output, "old");
    const std::pair<const char*, const char*> cases[] = {
        {"<r>", ""},
        {"<!DOCTYPE r [<!ENTITY e 'x'>]><r>&e;</r>", ""},
        {"<r/>", "<xsl:value-of select='1 +'/>"},
        {"<r/>", "text<xsl:message terminate='yes'>stop</xsl:message>"},
        {"<r/>", "text<xsl:apply-templates select='/'/>"},
    };
    for (const auto& [xml, body] : cases) {
        EXPECT_FALSE(transform(xml, body)) << xml << body;
        EXPECT_THAT(log.take(), Logs("style.xsl")) << xml << body;
        EXPECT_EQ(readFile(output), "old");
    }
    EXPECT_FALSE(Kes::XslTransformer("/missing.xml", nullptr, output.c_str()).transform());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(home.getPath()), {}), 3)
        << "a half file is left";
}

TEST_F(XslTransformerTest, anOutputThatCannotBeWrittenIsAFailure)
{
    for (const auto* path : {"", "/dev/full", "/proc/no/such/report.html"}) {
        output = path;
        EXPECT_FALSE(transform("<r>x</r>", "<xsl:value-of select='r'/>")) << path;
        EXPECT_THAT(log.take(), Logs("Error writing file")) << path;
    }
}

TEST_F(XslTransformerTest, theStylesheetWritesNoFilesAndMakesNoFolders)
{
    writeFile(home.file("kept"), "kept");
    for (const auto* target : {"stolen/file", "new", "kept"}) {
        EXPECT_FALSE(transform("<r/>", "<exsl:document href='" + home.file(target) + "'>x</exsl:document>"));
        EXPECT_THAT(log.take(), Logs("denied")) << target;
    }
    EXPECT_FALSE(std::filesystem::exists(home.file("stolen")) || std::filesystem::exists(home.file("new")));
    EXPECT_EQ(readFile(home.file("kept")), "kept");
}

TEST_F(XslTransformerTest, dataAreReadFromRegularFilesWithinLimits)
{
    writeFile(home.file("part & more.xml"), "<p>part</p>");
    const auto copyOf = [this](const std::string& file) {
        return "<xsl:copy-of select=\"document('" + home.file(file) + "')\"/>";
    };
    EXPECT_TRUE(transform("<r/>", copyOf("part%20%26%20more.xml")));
    EXPECT_EQ(readFile(output), "part");
    std::string attributes = "<r";
    for (int i = 0; i < 40000; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    EXPECT_FALSE(transform(attributes + "/>", ""));
    EXPECT_THAT(log.take(), Logs("too long"));
    // The name stands for a file, not for standard input.
    EXPECT_FALSE(Kes::XslTransformer("-", home.file("style.xsl").c_str(), output.c_str()).transform());
    EXPECT_THAT(log.take(), Logs("cannot open -"));
}

TEST_F(XslTransformerTest, nothingIsFetchedFromTheNetwork)
{
    Gio::init();
    const auto service = Gio::SocketService::create();
    const auto address = "http://127.0.0.1:" + std::to_string(service->add_any_inet_port()) + "/file.xml";
    EXPECT_FALSE(transform("<r/>", "<xsl:copy-of select=\"document('" + address + "')\"/>"));
    EXPECT_THAT(log.take(), Logs("denied"));
    EXPECT_FALSE(transform("<r/>", "", "<xsl:include href='" + address + "'/>"));
    EXPECT_THAT(log.take(), Logs("denied"));
    transform("<!DOCTYPE r SYSTEM '" + address + "'><r/>", "");
    // Nobody has accepted: a connection would still stand in the queue of the socket.
    bool called = false;
    service->signal_incoming().connect([&](const Glib::RefPtr<Gio::SocketConnection>&,
                                           const Glib::RefPtr<Glib::Object>&) { return called = true; });
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    EXPECT_FALSE(called);
}

} // namespace
