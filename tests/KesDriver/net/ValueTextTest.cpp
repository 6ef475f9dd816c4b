#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

using namespace KesDriver;
using namespace KesDriver::ValueText;

namespace {

bool isSame(const OutputStep& a, const OutputStep& b)
{
    return a.outputs == b.outputs && a.duration == b.duration && a.endOn == b.endOn && a.ramp == b.ramp &&
           a.faultDegrees == b.faultDegrees;
}

TEST(ValueText, WritesSequencesAsTheProtocolShowsAndReadsThemBack)
{
    OutputStep full{{}, std::chrono::hours(24)};
    full.outputs = {
        {{{0.1, -120.0}, {1e-7, 2.0}, {1e15, 3.0}}}, {{{4.0, 5.0}, {6.0, 7.0}, {8.0, 9.0}}}, 49.9, 60.0, 5};
    full.ramp = {
        {{{1.0, 2.0}, {3.0, 4.0}, {5.0, 6.0}}}, {{{7.0, 8.0}, {9.0, 10.0}, {11.0, 5e-324}}}, -13.0, 14.0};
    full.endOn = EndCondition({{1, true}, {2, false, true}}, EndCondition::Join::All, DeviceTime(20));
    full.faultDegrees = 90.0;
    OutputStep plain{{}, DeviceTime(1)};
    plain.endOn = InputCondition{8, false};
    const OutputSequence sequence{full, plain};
    const auto text = write(sequence);
    EXPECT_EQ(text, "STEP 86400,0.1,-120,1e-07,2,1e+15,3,4,5,6,7,8,9,49.9,60,5\n"
                    "RAMP 1,2,3,4,5,6,7,8,9,10,11,5e-324,-13,14\n"
                    "END ALL,0.00002,1C,2OE\n"
                    "ANGLE 90\n"
                    "STEP 0.000001,0,0,0,0,0,0,0,0,0,0,0,0,50,50,0\n"
                    "END ANY,0,8O\n");
    const auto read = readSequence(text, 2);
    ASSERT_TRUE(read.isGood());
    EXPECT_TRUE(std::ranges::equal(sequence, read.sequence, isSame));
}

/// A value, as it is written, and read back.
template <typename Value, typename Read>
void expectText(const Value& value, const std::string& text, Read read)
{
    EXPECT_EQ(write(value), text);
    EXPECT_EQ(read(text), value) << text;
}

TEST(ValueText, WritesOtherValuesAsTheProtocolShowsAndReadsThemBack)
{
    using std::chrono::milliseconds;
    expectText(OutputLimits{32.5, 301, 11, 1001, 9, 5, 451, 33, DeviceTime(7), 10001, milliseconds(501)},
               "32.5,301,11,1001,9,5,451,33,7,10001,501", &readLimits);
    expectText(DeviceStatus{{true, false, 110.5, {}}, false, Stage::Armed}, "1,0,110.5,0,ARM", &readStatus);
    expectText(DeviceStatus{{false, true, 24.0, {}}, true, Stage::Running}, "0,1,24,1,RUN", &readStatus);
    const DeviceTime time(-12);
    const KesAvary avary{0, 0, false, true, {{"IA", false, false, true}, {"a\"b'", true, true, false}}};
    const std::pair<EventRecord::Content, const char*> events[] = {
        {InputEvent{8, false, time}, "INP,8,0"},
        {InputEvent{1, true, time, 3}, "INP,1,1,3"},
        {StepEvent{4, time}, "STEP,4"},
        {SequenceEvent{true, time}, "SEQ,1"},
        {ReleaseRecord{"off, \"why\""}, R"(RELEASE,"off, ""why""")"},
        {KesAvary{}, "FAULT,0"},
        {avary, R"(FAULT,1,"IA:100","a""b':011")"},
    };
    for (const auto& [content, text] : events)
        expectText(EventRecord{7, time, content}, std::string("7,-12,") + text, &readEvent);
    EXPECT_EQ(readIdentity("KES,KESTO-65535,00017,2.4.1"), (KestoIdentity{{65535, 17}, "2.4.1", {}}));
    EXPECT_EQ(writeIdentity({{3, 17}, "2.4,1;\n", {}}), "KES,KESTO-3,00017,2.41");
    EXPECT_EQ(FieldText::quote("a\"b\nc"), "\"a\"\"b c\"");
}

TEST(ValueText, RefusesWhatMakesNoSense)
{
    const auto refuses = [](auto read) {
        return [read](const std::string& text) { return !read(text).has_value(); };
    };
    const auto refusesLines = [](const std::string& text) { return !readSequence(text, 1).isGood(); };
    const std::string zeros = "0,0,0,0,0,0,0,0,0,0,0,0,50,50";
    const std::string step = "STEP 1," + zeros + ",0\n";
    const std::pair<std::function<bool(const std::string&)>, std::vector<std::string>> cases[] = {
        {refuses(readOutputs),
         {"", zeros, zeros + ",0,0", zeros + ",", zeros + ",-1", zeros + ",0.5", zeros + ",4294967296",
          zeros + ",1x", "nan," + zeros, "inf," + zeros, "1e999," + zeros, "\"1\"," + zeros, "0x1," + zeros,
          std::string(1000000, ',')}},
        {refuses(readRamp), {zeros + ",0", "1,2", "--1" + zeros.substr(1)}},
        {refuses(readEnd),
         {"", "ANY", "ANY,0", "NONE,0,1C", "ANY,1C", "ANY,0,1", "ANY,0,C", "ANY,0,-1C", "ANY,0,1CEE",
          "ANY,0,1C,", "ANY,nan,1C", "ANY,1e300,1C", "ANY,0,4294967296C"}},
        {refusesLines,
         {"RAMP " + zeros + "\n", "END ANY,0,1C", step + "ANGLE nan", step + "ANGLE 1,2", step + "STOP",
          step + step, step + "ANGLE", "STEP1," + zeros + ",0", "STEP -,0," + zeros}},
        {refuses(readLimits),
         {"", "32,300,10,1000,8,4,450,32,10000000,10000", "32,300,10,1000,8,4,450,32,10000000,10000,500,1",
          "nan,300,10,1000,8,4,450,32,10000000,10000,500", "32,300,10,1000,-8,4,450,32,10000000,10000,500",
          "32,300,10,1000,8,4,450,32,1e7,10000,500", "32,300,10,1000,8,4,450,32,10000000,10000,-1"}},
        {refuses(readStatus),
         {"", "1,0,0,0", "1,0,0,0,IDLE,0", "2,0,0,0,IDLE", "1,0,x,0,IDLE", "1,0,nan,0,IDLE",
          "1,0,0,0,idle2"}},
        {refuses(readEvent),
         {"", "1", "1,2", "0,1,SEQ,1", "-1,1,SEQ,1", "1,x,SEQ,1", "1,99999999999999999999,SEQ,1"}},
        {refuses(readEvent),
         {"1,1,SEQ", "1,1,SEQ,2", "1,1,SEQ,1,1", "1,1,NEWS,1", "1,1,INP,1", "1,1,INP,1,1,-1",
          "1,1,INP,4294967296,1", "1,1,STEP,99999999999999999999", "1,1,RELEASE,off", "1,1,RELEASE,\"off"}},
        {refuses(readEvent),
         {"1,1,FAULT", "1,1,FAULT,0,IA:100", "1,1,FAULT,0,\"IA:102\"", "1,1,FAULT,0,\"IA100\"",
          "1,1,FAULT,0,\"\"", "1,1,FAULT,0" + std::string(2000, ',')}},
        {refuses(readIdentity),
         {"", "KES,KESTO-3,17", "KES,KESTO-3,17,1,1", "SEK,KESTO-3,17,1", "KES,KESTO-,17,1",
          "KES,KESTO-65536,17,1", "KES,KESTO-3,4294967296,1", "KES,kesto-x,17,1"}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        for (const auto& text : cases[i].second)
            EXPECT_TRUE(cases[i].first(text)) << i << ": " << text.substr(0, 100);
}

TEST(ValueText, TellsWhereASequenceIsWrong)
{
    const std::string step = "step 1,0,0,0,0,0,0,0,0,0,0,0,0,50,50,0\r\n";
    const auto good = readSequence("\n" + step + "\n" + step + "Angle  90 \r\nend any,0,1c", 2);
    ASSERT_TRUE(good.isGood());
    ASSERT_EQ(good.sequence.size(), 2U);
    EXPECT_EQ(good.sequence[1].faultDegrees, 90.0);
    EXPECT_EQ(good.sequence[1].endOn, EndCondition(InputCondition{1, true}));
    EXPECT_EQ(readSequence("\n" + step + "\n" + step + "ANGLE x\nANGLE y", 2).wrongLine, 5U);
    const auto tooMany = readSequence(step + step + step, 2);
    EXPECT_TRUE(tooMany.isTooLong);
    EXPECT_EQ(tooMany.wrongLine, 0U);
}

TEST(FieldText, KeepsQuotedTextsWhole)
{
    using Parts = std::vector<std::string_view>;
    EXPECT_EQ(FieldText::split(" 1 ,\"a,b\"\"\",'c,d' ", ',', 3), (Parts{"1", "\"a,b\"\"\"", "'c,d'"}));
    EXPECT_EQ(FieldText::split("", ';', 1), Parts{""});
    EXPECT_FALSE(FieldText::split("1;2", ';', 1));
    EXPECT_FALSE(FieldText::split("\"1;2", ';', 5));
    EXPECT_EQ(FieldText::unquote("'a''b'"), "a'b");
    EXPECT_EQ(FieldText::unquote("\"a\tb\""), "a b");
    for (const char* text : {"", "\"", "a", "\"a\"b\"", "\"a'", "\"a\"\""})
        EXPECT_FALSE(FieldText::unquote(text)) << text;
}

} // namespace
