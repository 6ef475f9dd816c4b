#include <KesCommon/Log.h>
#include <KesCommon/XslTransformer.h>

#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <giomm/inetsocketaddress.h>
#include <giomm/init.h>
#include <giomm/socketservice.h>

using KesTest::readFile;
using KesTest::writeFile;
using testing::HasSubstr;

namespace {

class XslTransformerTest : public testing::Test {
protected:
    XslTransformerTest()
    {
        KesLog::Log::setObserver([this](KesLog::Log::Level, const std::string& text) { log += text; });
    }
    ~XslTransformerTest() override { KesLog::Log::setObserver(nullptr); }

    bool transform(const std::string& xml, const std::string& body,
                   const std::map<std::string, std::string>& parameters = {}, const std::string& more = "")
    {
        writeFile(home.file("in.xml"), xml);
        writeFile(home.file("style.xsl"),
                  R"(<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
            xmlns:exsl="http://exslt.org/common" xmlns:math="http://exslt.org/math" extension-element-prefixes="exsl">
            <xsl:output method="text" encoding="UTF-8"/>)" +
                      more + "<xsl:template match=\"/\">" + body + "</xsl:template></xsl:stylesheet>");
        Kes::XslTransformer transformer(home.file("in.xml").c_str(), home.file("style.xsl").c_str(),
                                        output.c_str());
        for (const auto& [name, value] : parameters)
            transformer.setParameter(name, value);
        return transformer.transform();
    }

    KesTest::TemporaryHome home;
    const std::string output = home.file("report.txt");
    std::string log;
};

TEST_F(XslTransformerTest, writesTheResultAndOverwritesTheOldOne)
{
    writeFile(output, "an older and longer report");
    EXPECT_TRUE(transform("<r>Ток</r>", "<xsl:value-of select='r'/> <xsl:value-of select='math:sqrt(9)'/>"));
    EXPECT_EQ(readFile(output), "Ток3");
    EXPECT_TRUE(transform("<r/>", ""));
    EXPECT_EQ(readFile(output), "");
    EXPECT_EQ(log, "");
}

TEST_F(XslTransformerTest, takesParametersLiterally)
{
    const std::string value = "it's \"quoted\" & 1 + 1";
    EXPECT_TRUE(transform("<r/>", "<xsl:value-of select='$p'/>", {{"p", value}}, "<xsl:param name='p'/>"));
    EXPECT_EQ(readFile(output), value);
}

TEST_F(XslTransformerTest, aFailureKeepsTheOldFileAndIsLogged)
{
    writeFile(output, "old");
    const std::pair<const char*, const char*> cases[] = {
        {"<r>", ""},
        {"", ""},
        {"<r/>", "<xsl:value-of select='1 +'/>"},
        {"<r/>", "<xsl:unclosed>"},
        {"<r/>", "text<xsl:message terminate='yes'>stop</xsl:message>"},
        {"<r/>", "text<xsl:call-template name='missing'/>"},
        {"<r/>", "text<xsl:apply-templates select='/'/>"},
    };
    for (const auto& [xml, body] : cases) {
        log.clear();
        EXPECT_FALSE(transform(xml, body)) << xml << body;
        EXPECT_THAT(log, HasSubstr("style.xsl")) << xml << body;
        EXPECT_EQ(readFile(output), "old");
    }
    EXPECT_FALSE(Kes::XslTransformer("/missing.xml", nullptr, output.c_str()).transform());
    EXPECT_FALSE(
        Kes::XslTransformer(home.file("in.xml").c_str(), home.getPath().c_str(), output.c_str()).transform());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(home.getPath()), {}), 3)
        << "a half file is left";
}

TEST_F(XslTransformerTest, anOutputThatCannotBeWrittenIsAFailure)
{
    for (const auto* path : {"", "/dev/full", "/proc/no/such/report.html"}) {
        log.clear();
        writeFile(home.file("in.xml"), "<r/>");
        EXPECT_TRUE(transform("<r>x</r>", "<xsl:value-of select='r'/>"));
        EXPECT_FALSE(Kes::XslTransformer(home.file("in.xml").c_str(), home.file("style.xsl").c_str(), path)
                         .transform())
            << path;
        EXPECT_THAT(log, HasSubstr("Error writing file")) << path;
    }
}

TEST_F(XslTransformerTest, theStylesheetWritesNoFilesAndMakesNoFolders)
{
    const auto target = home.file("stolen/file");
    EXPECT_FALSE(transform("<r/>", "<exsl:document href='" + target + "'>x</exsl:document>"));
    EXPECT_FALSE(std::filesystem::exists(home.file("stolen")));
    EXPECT_THAT(log, HasSubstr("denied"));
}

TEST_F(XslTransformerTest, entitiesAreNotReplaced)
{
    writeFile(home.file("secret"), "secret");
    const auto external = "<!DOCTYPE r [<!ENTITY e SYSTEM 'file://" + home.file("secret") + "'>]><r>a&e;</r>";
    transform(external, "<xsl:value-of select='r'/>");
    EXPECT_THAT(readFile(output), testing::Not(HasSubstr("secret")));

    std::string bomb = "<!DOCTYPE r [<!ENTITY e0 '0123456789'>";
    for (int i = 1; i < 12; ++i) {
        bomb += "<!ENTITY e" + std::to_string(i) + " '";
        for (int j = 0; j < 10; ++j)
            bomb += "&e" + std::to_string(i - 1) + ";";
        bomb += "'>";
    }
    transform(bomb + "]><r>&e11;</r>", "<xsl:value-of select='string-length(r)'/>");
    EXPECT_LT(readFile(output).size(), 1'000'000U);
}

TEST_F(XslTransformerTest, nothingIsFetchedFromTheNetwork)
{
    Gio::init();
    const auto service = Gio::SocketService::create();
    const auto port = service->add_any_inet_port();
    const auto address = "http://127.0.0.1:" + std::to_string(port) + "/file.xml";
    EXPECT_FALSE(transform("<r/>", "<xsl:copy-of select=\"document('" + address + "')\"/>"));
    EXPECT_THAT(log, HasSubstr("denied"));
    log.clear();
    EXPECT_FALSE(transform("<r/>", "", {}, "<xsl:include href='" + address + "'/>"));
    EXPECT_THAT(log, HasSubstr("denied"));
    transform("<!DOCTYPE r SYSTEM '" + address + "'><r/>", "");
    // Nobody has accepted: a connection would still stand in the queue of the socket.
    bool called = false;
    service->signal_incoming().connect(
        [&](const Glib::RefPtr<Gio::SocketConnection>&, const Glib::RefPtr<Glib::Object>&) -> bool {
            called = true;
            return true;
        });
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
    EXPECT_FALSE(called);
}

TEST_F(XslTransformerTest, filesOfTheStylesheetMayBeIncluded)
{
    writeFile(home.file("part.xsl"),
              "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
              "<xsl:template name='part'>included</xsl:template></xsl:stylesheet>");
    EXPECT_TRUE(transform("<r/>", "<xsl:call-template name='part'/>", {}, "<xsl:include href='part.xsl'/>"));
    EXPECT_EQ(readFile(output), "included");
}

} // namespace
