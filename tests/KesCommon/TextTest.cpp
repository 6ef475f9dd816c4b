#include <KesCommon/CommonText.h>
#include <KesCommon/Language.h>
#include <KesCommon/Net/NetAddr.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/Result.h>
#include <KesCommon/StringHelper.h>
#include <KesCommon/TextTable.h>
#include <KesCommon/TypeHelper.h>

#include "support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <vector>

namespace Outer::Inner {
enum class Kind { One };
class Plain {};
template <typename... T>
class Holder {
public:
    class Nested {};
};
template <Kind>
class Valued {};
} // namespace Outer::Inner

namespace {

class Hidden {};

TEST(TypeHelper, dropsQualifiersAndKeepsArguments)
{
    using namespace Outer::Inner;
    class Local {};
    using Kes::TypeHelper::getShortTypeName;
    EXPECT_EQ(getShortTypeName(typeid(int)), "int");
    EXPECT_EQ(getShortTypeName(typeid(Plain)), "Plain");
    EXPECT_EQ(getShortTypeName(typeid(Hidden)), "Hidden");
    EXPECT_EQ(getShortTypeName(typeid(Local)), "Local");
    EXPECT_EQ(getShortTypeName(typeid(Holder<Plain, Holder<Hidden>>)), "Holder<Plain, Holder<Hidden> >");
    EXPECT_EQ(getShortTypeName(typeid(Holder<Plain>::Nested)), "Nested");
    EXPECT_EQ(getShortTypeName(typeid(Holder<Plain*, const Plain**>)), "Holder<Plain*, Plain const**>");
    EXPECT_EQ(getShortTypeName(typeid(Holder<Plain(Hidden, int)>)), "Holder<Plain (Hidden, int)>");
    EXPECT_EQ(getShortTypeName(typeid(Valued<Kind::One>)), "Valued<(Kind)0>");
}

TEST(StringHelper, formatsTemplates)
{
    using namespace Kes::StringHelper;
    EXPECT_EQ(formatC<const char*>("Error saving file.\n\nPath:\n%s", "/a b"),
              "Error saving file.\n\nPath:\n/a b");
    EXPECT_EQ(formatC<const char*>("Нет места", "x"), "Нет места");
    EXPECT_EQ(formatC<const char*>("", "x"), "");
    EXPECT_EQ(formatC<const char*>("%s", std::string(100000, 'x').c_str()), std::string(100000, 'x'));
    EXPECT_EQ(format("%s %s %d %g %c", std::string("ы"), "text", 3, 0.5F, '!'), "ы text 3 0.5 !");
    EXPECT_EQ(format(std::string("%zu%%"), std::size_t{7}), "7%");
}

TEST(StringHelper, refusesWhatCannotBeMeasured)
{
    testing::internal::CaptureStdout();
    EXPECT_THROW(
        try {
            Kes::StringHelper::formatC<const char*>("%2147483648s", "x");
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "Kes::StringHelper::format - Error during formatting.");
            throw;
        },
        std::runtime_error);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Kes::StringHelper::format - Error during formatting.");
}

TEST(StringHelper, writesPointsInALocaleOfCommas)
{
    const KesTest::TemporaryHome home;
    const auto command = "localedef -i ru_RU -f UTF-8 " + home.file("ru_RU.UTF-8") + " >/dev/null 2>&1";
    if (std::system(command.c_str()) != 0)
        GTEST_SKIP() << "the sources of the Russian locale are not installed";
    setenv("LOCPATH", home.getPath().c_str(), 1);
    ASSERT_TRUE(std::setlocale(LC_ALL, "ru_RU.UTF-8"));
    char text[8];
    EXPECT_EQ(Kes::StringHelper::format("%.2f", 1.5), "1.50");
    std::snprintf(text, sizeof text, "%.2f", 1.5);
    EXPECT_STREQ(text, "1,50") << "the locale of the thread is not given back";
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
}

TEST(StringHelper, comparesParts)
{
    using namespace Kes::StringHelper;
    EXPECT_TRUE(endsWith("DistanceModel", "Model"));
    EXPECT_TRUE(endsWith("Model", ""));
    EXPECT_FALSE(endsWith("del", "Model"));
    EXPECT_FALSE(endsWith("Distancemodel", "Model"));

    const std::string text = "-INFinity";
    EXPECT_TRUE(isInclude(text, "inf", 1, text.size(), true));
    EXPECT_FALSE(isInclude(text, "inf", 1, text.size(), false));
    EXPECT_TRUE(isInclude(text, "INFinity", 1, text.size(), false));
    EXPECT_FALSE(isInclude(text, "infinity", 1, text.size() - 1, true));
    EXPECT_FALSE(isInclude(text, "inf", 0, text.size(), true));
    EXPECT_FALSE(isInclude(text, "inf", 100, 200, true));
    EXPECT_FALSE(isInclude("[", "{", 0, 1, true));
}

constexpr Kes::TextTable table({{"b.last", "Last", "Последний"}, {"a.first", "First", "Первый"}});

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

TEST(Language, followsTheFirstVariableThatIsSet)
{
    for (const char* name : {"ru", "ru_RU", "ru_RU.UTF-8", "ru_UA.KOI8-U", "ru@x"})
        EXPECT_EQ(lng::languageOfLocale(name), lng::Russian) << name;
    for (const char* name : {"", "C", "C.UTF-8", "en_US.UTF-8", "run", "de_RU"})
        EXPECT_EQ(lng::languageOfLocale(name), lng::English) << name;

    std::map<std::string, std::string> before;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const char* value = std::getenv(name))
            before[name] = value;
        unsetenv(name);
    }
    const auto languageOfUser = [] {
        lng::useLanguageOfUser();
        return lng::language;
    };
    EXPECT_EQ(languageOfUser(), lng::English);
    setenv("LANG", "ru_RU.UTF-8", 1);
    EXPECT_EQ(languageOfUser(), lng::Russian);
    setenv("LC_MESSAGES", "en_GB.UTF-8", 1);
    EXPECT_EQ(languageOfUser(), lng::English);
    setenv("LC_ALL", "", 1);
    EXPECT_EQ(languageOfUser(), lng::English);
    setenv("LC_ALL", "ru_RU", 1);
    EXPECT_EQ(languageOfUser(), lng::Russian);
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
        unsetenv(name);
    for (const auto& [name, value] : before)
        setenv(name.c_str(), value.c_str(), 1);
    lng::language = lng::English;
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

TEST(Result, isAFailureWhateverItSays)
{
    EXPECT_TRUE(Kes::Result(true));
    EXPECT_FALSE(Kes::Result(false));
    EXPECT_FALSE(Kes::Result(std::shared_ptr<Kes::ObjectError>()));
    EXPECT_EQ(Kes::Result::failure("why").getError()->getMessage(), "why");
    static_assert(!std::is_constructible_v<Kes::Result, const char*>, "a text must not pass for success");
}

TEST(NetAddr, readsStrictlyWhatItWrites)
{
    using Address = Kes::Net::NetAddr<4, '.'>;
    const Address address({192, 168, 0, 255});
    EXPECT_EQ(address.to_string('.'), "192.168.0.255");
    EXPECT_EQ(address.to_string('-'), "192-168-0-255");
    EXPECT_EQ(Address::parse("192.168.0.255"), address);
    EXPECT_EQ(Address::parse("0.0.0.0"), Address());
    EXPECT_LT(Address({9, 0, 0, 0}), Address({10, 0, 0, 0}));
    for (const char* text : {"", "1", "1.2.3", "1.2.3.4.", ".1.2.3.4", "1.2.3.4.5", "1..2.3", "256.1.1.1",
                             "1.2.3.-4", "+1.2.3.4", " 1.2.3.4", "1.2.3.4 ", "01.2.3.4", "1.2.3.00",
                             "1.2.3.a", "1,2,3,4", "1.2.3.99999999999"})
        EXPECT_EQ(Address::parse(text), std::nullopt) << text;
}

} // namespace
