#include <KesCommon/CommonText.h>
#include <KesCommon/Net/NetAddr.h>
#include <KesCommon/NumberText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/Result.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/TextTable.h>
#include <KesCommon/TypeHelper.h>
#include <KesCommon/UnitText.h>

#include "support/LanguageScope.h"
#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace Outer::Inner {
class Plain {};
template <typename... T>
struct Holder {
    class Nested {};
};
} // namespace Outer::Inner

namespace {

TEST(TypeHelper, dropsQualifiersAndKeepsArguments)
{
    using namespace Outer::Inner;
    using Kes::TypeHelper::getShortTypeName;
    class Local {};
    EXPECT_EQ(getShortTypeName(typeid(Local)), "Local");
    EXPECT_EQ(getShortTypeName(typeid(Holder<Plain>::Nested)), "Nested");
    EXPECT_EQ(getShortTypeName(typeid(Holder<Plain, Holder<Local>>)), "Holder<Plain, Holder<Local> >");
}

TEST(StringHelper, formatsTemplates)
{
    using namespace Kes::StringHelper;
    EXPECT_EQ(formatC<const char*>("Path:\n%s", "/a b"), "Path:\n/a b");
    EXPECT_EQ(formatC<const char*>("Нет места", "x"), "Нет места");
    EXPECT_EQ(formatC<const char*>("%s", std::string(100000, 'x').c_str()), std::string(100000, 'x'));
    EXPECT_EQ(format("%s %s %d %g %c%%", std::string("ы"), "text", 3, 0.5F, '!'), "ы text 3 0.5 !%");
    testing::internal::CaptureStdout();
    EXPECT_THROW(formatC<const char*>("%2147483648s", "x"), std::runtime_error);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Kes::StringHelper::format - Error during formatting.");
}

TEST(StringHelper, showsForeignTextPlainly)
{
    using Kes::StringHelper::toPlainText;
    EXPECT_EQ(toPlainText(" Анна & <b> ", 64), "Анна & <b>");
    EXPECT_EQ(toPlainText("a\r\n\x1b[1m\x7f\u0085\u202e\u2066\ufeffb", 64), "a[1mb");
    EXPECT_EQ(toPlainText("\xff\xc3", 64), "\ufffd\ufffd");
    EXPECT_EQ(toPlainText(std::string("a\0b", 3), 64), "a\ufffdb");
    EXPECT_EQ(toPlainText("ыыыы", 4), "ыыыы");
    EXPECT_EQ(toPlainText(std::string(1000000, 'x'), 4), "xxx…");
    EXPECT_EQ(toPlainText("\n", 4), "");
}

TEST(StringHelper, writesPointsInALocaleOfCommas)
{
    const KesTest::TemporaryHome home;
    const auto command = "localedef -i ru_RU -f UTF-8 " + home.file("ru_RU.UTF-8") + " >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << "are the sources of the locales installed?";
    setenv("LOCPATH", home.getPath().c_str(), 1);
    ASSERT_TRUE(std::setlocale(LC_ALL, "ru_RU.UTF-8"));
    char text[8];
    EXPECT_EQ(Kes::StringHelper::format("%.2f", 1.5), "1.50");
    std::snprintf(text, sizeof text, "%.2f", 1.5);
    EXPECT_STREQ(text, "1,50") << "the locale of the thread is not given back";
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
}

constexpr Kes::TextTable table("Test", {{"b.last", "Last", "Последний"}, {"a.first", "First", "Первый"}});

TEST(TextTable, choosesTheLanguageWhenAsked)
{
    EXPECT_STREQ(table.get("a.first"), "First");
    lng::language = lng::Russian;
    EXPECT_STREQ(table.get("b.last"), "Последний");
    EXPECT_STREQ(lng::Common::get("error.ReadOnly"), "Список доступен только для чтения.");
    lng::language = lng::English;
    for (const std::string unknown : {"A.first", "a.first ", "", "c"})
        EXPECT_EQ(table.get(unknown), unknown.c_str());
}

TEST(Language, isAddedAsATableAndFallsBackToEnglish)
{
    static constexpr lng::TranslatedText texts[] = {{"Test.a.first", "Unua"}, {"Unit.second", "sek."}};
    const auto esperanto = lng::addLanguage({"eo", "eo-EO", ',', texts});
    EXPECT_THROW(lng::addLanguage({"eo", "eo-XX", ',', texts}), std::invalid_argument);
    EXPECT_EQ(lng::findLanguage("eo"), esperanto);
    EXPECT_EQ(lng::languageOfLocale("eo_CH.UTF-8"), esperanto);
    EXPECT_EQ(lng::languageCodes(), (std::vector<std::string>{"en", "ru", "eo"}));

    const KesTest::LanguageScope scope(esperanto);
    EXPECT_STREQ(table.get("a.first"), "Unua");
    EXPECT_STREQ(table.get("b.last"), "Last") << "a missing text is English";
    EXPECT_STREQ(lng::Unit::second.get(), "sek.");
    EXPECT_STREQ(lng::languageTag(), "eo-EO");
    EXPECT_EQ(Kes::NumberText::show(0.5), "0,5");
}

TEST(Language, followsTheFirstVariableThatIsSet)
{
    for (const char* name : {"ru", "ru_RU", "ru_RU.UTF-8", "ru_UA.KOI8-U", "ru@x"})
        EXPECT_EQ(lng::languageOfLocale(name), lng::Russian) << name;
    for (const char* name : {"", "C", "C.UTF-8", "en_US.UTF-8", "run", "de_RU"})
        EXPECT_EQ(lng::languageOfLocale(name), lng::English) << name;

    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        unsetenv(name);
    lng::useLanguageOfUser();
    EXPECT_EQ(lng::language, lng::English);
    for (const auto& [name, value, expected] :
         {std::tuple("LANG", "ru_RU.UTF-8", lng::Russian),
          std::tuple("LC_MESSAGES", "en_GB.UTF-8", lng::English), std::tuple("LC_ALL", "", lng::English),
          std::tuple("LC_ALL", "ru_RU", lng::Russian)}) {
        setenv(name, value, 1);
        lng::useLanguageOfUser();
        EXPECT_EQ(lng::language, expected) << name;
    }
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        unsetenv(name);
    lng::language = lng::English;
}

TEST(NumberText, isPlainInTheUsualRangeWithOneZero)
{
    for (const auto& [value, text] : {std::pair(-0.0, "0"),
                                      {1e-6, "0.000001"},
                                      {-9e-7, "-9e-07"},
                                      {999999999999999.0, "999999999999999"},
                                      {1e15, "1e+15"}})
        EXPECT_EQ(Kes::NumberText::write(value), text);
}

TEST(ObjectErrorHelper, indentsInnerErrors)
{
    using Kes::TextError;
    const auto deep = TextError::create("deep\nsecond line");
    const auto outer = TextError::create("outer", {TextError::create("inner", {deep}), nullptr, deep});
    EXPECT_EQ(Kes::ObjectErrorHelper::toDisplayString({outer, nullptr, TextError::create("next")}),
              "outer\n  inner\n    deep\n    second line\n  deep\n  second line\nnext");
    EXPECT_EQ(Kes::ObjectErrorHelper::toDisplayString({}), "");
}

TEST(NetAddr, readsStrictlyWhatItWrites)
{
    using Address = Kes::Net::NetAddr<4, '.'>;
    const Address address({192, 168, 0, 255});
    EXPECT_EQ(address.to_string('.'), "192.168.0.255");
    EXPECT_EQ(Address::parse("192.168.0.255"), address);
    EXPECT_LT(Address({9, 0, 0, 0}), Address({10, 0, 0, 0}));
    for (const char* text :
         {"", "1.2.3", "1.2.3.4.", ".1.2.3.4", "1.2.3.4.5", "1..2.3", "256.1.1.1", "1.2.3.-4", " 1.2.3.4",
          "1.2.3.4 ", "01.2.3.4", "1.2.3.a", "1,2,3,4", "1.2.3.99999999999"})
        EXPECT_EQ(Address::parse(text), std::nullopt) << text;
}

} // namespace
