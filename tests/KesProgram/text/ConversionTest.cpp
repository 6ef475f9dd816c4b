#include <KesProgram/text/Conversion.h>

#include <gtest/gtest.h>

#include <cmath>
#include <locale>
#include <utility>

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

/// Digits of the whole part in groups and a comma, as in many users' locales.
class GroupingLocale {
public:
    GroupingLocale() : _previous(std::locale::global(std::locale(std::locale(), new Punctuation))) {}
    ~GroupingLocale() { std::locale::global(_previous); }

private:
    struct Punctuation : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return ' '; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale _previous;
};

TEST(Conversion, WritesARectangle)
{
    const GroupingLocale locale;
    const std::pair<Kes::RectangleF, const char*> cases[] = {
        {{100, 50, 1280, 720}, "100;50;1280;720"},
        {{0, 1, 10, 123456}, "0;1;10;123456"},
        {{12.345678f, 1.23456f, 0.123456f, 0.00123456f}, "12.3457;1.2346;0.1235;0.001235"},
        {{0.0002f, 0.0001f, -0.00009f, -0.0f}, "0.0002;0;0;0"},
        {{-5.5f, -1234.5678f, -0.123456789f, 800.5f}, "-5.5;-1234.57;-0.123457;800.5"},
        {{1234567, 3.4e38f, infinity, -infinity}, "1.23457e+06;3.4e+38;inf;-inf"},
        {{notANumber, 0, 0, 0}, "nan;0;0;0"}};
    for (const auto& [value, text] : cases)
        EXPECT_EQ((Kes::convertToString<Kes::RectangleF, true, true>(value)), text);
}

TEST(Conversion, ReadsARectangleOfFourItems)
{
    const GroupingLocale locale;
    const Kes::RectangleF old{1, 2, 3, 4};
    const struct {
        const char* text;
        bool success;
        Kes::RectangleF value;
    } cases[] = {{"100;50;1280;720", true, {100, 50, 1280, 720}},
                 {"-5.5;0;1.23457e+06;1", true, {-5.5f, 0, 1234570, 1}},
                 {"a;2,5;;", true, {}},
                 {";;;", true, {}},
                 {"1;2;3;", true, {1, 2, 3, 0}},
                 {"1;2;3", false, old},
                 {"1;2;3;4;", false, old},
                 {"", false, old}};
    for (const auto& [text, success, value] : cases) {
        auto read = old;
        EXPECT_EQ((Kes::tryConvert<Kes::RectangleF, true, true>(text, read)), success) << text;
        EXPECT_EQ(read, value) << text;
    }
}

TEST(Conversion, ReadsOneWholeNumber)
{
    const GroupingLocale locale;
    const std::pair<const char*, float> good[] = {{"800.5", 800.5f},      {"+1", 1},
                                                  {"-1e3", -1000},        {"\t 7", 7},
                                                  {".5", 0.5f},           {"5.", 5},
                                                  {"inf", infinity},      {"-inf", -infinity},
                                                  {"infinity", infinity}, {"-infinity", -infinity}};
    for (const auto& [text, value] : good) {
        float read = 42;
        EXPECT_TRUE((Kes::tryConvert<float, true>(text, read))) << text;
        EXPECT_EQ(read, value) << text;
    }
    for (const bool negative : {false, true}) {
        float read = 42;
        EXPECT_TRUE((Kes::tryConvert<float, true>(negative ? "-nan" : "nan", read)));
        EXPECT_TRUE(std::isnan(read));
        EXPECT_EQ(std::signbit(read), negative);
    }
    for (const std::string text : {"", " ", "-", "+inf", "infx", "nan ", " nan", "1,5", "1 ", "1x", "1e",
                                   "1e99", "--1", "--inf", "0x10", "1.2.3"}) {
        float read = 42;
        EXPECT_FALSE((Kes::tryConvert<float, true>(text, read))) << text;
        EXPECT_EQ(read, 42) << text;
    }
}

} // namespace
