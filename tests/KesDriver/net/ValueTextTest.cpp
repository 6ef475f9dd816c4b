#include <KesDriver/net/FieldText.h>
#include <KesDriver/net/ValueText.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <utility>

using namespace KesDriver;
using namespace KesDriver::ValueText;

namespace {

class Source {
public:
    explicit Source(unsigned seed) : _engine(seed) {}

    std::uint64_t bits() { return _engine(); }
    bool flag() { return (bits() & 1U) != 0; }
    std::size_t below(std::size_t count) { return bits() % count; }
    /// Any finite number, common ones more often.
    double number()
    {
        constexpr double common[] = {0.0, 1.0, -120.0, 0.1, 50.0, 1e-7, 1e15, 5e-324};
        const auto any = std::bit_cast<double>(bits());
        return flag() || !std::isfinite(any) ? common[below(std::size(common))] : any;
    }
    DeviceTime time() { return DeviceTime(static_cast<std::int64_t>(below(86'400'000'001ULL))); }
    std::string text()
    {
        constexpr const char* texts[] = {"", "IA", "a\"b'c", ";,:!", "\xD0\x9A"};
        return texts[below(std::size(texts))];
    }
    template <typename Values>
    Values waves()
    {
        Values values;
        for (auto* group : {&values.currents, &values.voltages})
            for (auto& pair : *group)
                pair = {number(), number()};
        values.currentHertz = number();
        values.voltageHertz = number();
        return values;
    }

private:
    std::mt19937_64 _engine;
};

OutputStep makeStep(Source& source)
{
    OutputStep step{source.waves<OutputState>(), source.time()};
    step.outputs.binaryOutputs = static_cast<std::uint32_t>(source.bits());
    if (source.flag())
        step.ramp = source.waves<OutputRamp>();
    if (source.flag())
        step.faultDegrees = source.number();
    if (source.flag()) {
        step.endOn = EndCondition({}, source.flag() ? EndCondition::Join::Any : EndCondition::Join::All,
                                  source.time());
        for (auto left = source.below(8) + 1; left > 0; --left)
            step.endOn->inputs.push_back(
                {static_cast<unsigned>(source.bits()), source.flag(), source.flag()});
    }
    return step;
}

EventRecord::Content makeContent(Source& source, DeviceTime time)
{
    switch (source.below(5)) {
    case 0:
        return InputEvent{static_cast<unsigned>(source.bits()), source.flag(), time,
                          source.flag() ? std::optional<std::size_t>(source.bits()) : std::nullopt};
    case 1:
        return StepEvent{source.bits(), time};
    case 2:
        return SequenceEvent{source.flag(), time};
    case 3:
        return ReleaseRecord{source.text()};
    default:
        KesAvary avary;
        avary.isQuickShutdown = source.flag();
        for (auto left = source.below(7); left > 0; --left)
            avary.channels.push_back({source.text(), source.flag(), source.flag(), source.flag()});
        return avary;
    }
}

bool isSame(const OutputStep& a, const OutputStep& b)
{
    return a.outputs == b.outputs && a.duration == b.duration && a.endOn == b.endOn && a.ramp == b.ramp &&
           a.faultDegrees == b.faultDegrees;
}

TEST(ValueText, ReadsBackWhatItWrites)
{
    constexpr unsigned seed = 20261122;
    Source source(seed);
    for (unsigned round = 0; round < 2000; ++round) {
        SCOPED_TRACE(round);
        OutputSequence sequence;
        for (auto left = source.below(5); left > 0; --left)
            sequence.push_back(makeStep(source));
        const auto reading = readSequence(write(sequence), sequence.size());
        ASSERT_TRUE(reading.isGood()) << write(sequence);
        ASSERT_TRUE(std::equal(sequence.begin(), sequence.end(), reading.sequence.begin(),
                               reading.sequence.end(), isSame))
            << write(sequence);

        const OutputLimits limits{source.number(),
                                  source.number(),
                                  source.number(),
                                  source.number(),
                                  static_cast<unsigned>(source.bits()),
                                  static_cast<unsigned>(source.bits()),
                                  source.number(),
                                  source.number(),
                                  source.time(),
                                  source.below(100000),
                                  std::chrono::milliseconds(source.below(100000))};
        ASSERT_EQ(readLimits(write(limits)), limits) << write(limits);

        const DeviceStatus status{{source.flag(), source.flag(), source.number(), {}},
                                  source.flag(),
                                  static_cast<Stage>(source.below(3))};
        ASSERT_EQ(readStatus(write(status)), status) << write(status);

        const DeviceTime time = source.flag() ? source.time() : -source.time();
        const EventRecord record{source.below(1000) + 1, time, makeContent(source, time)};
        ASSERT_EQ(readEvent(write(record)), record) << write(record);

        const KestoIdentity identity{KestoIdentifer(static_cast<std::uint16_t>(source.bits()),
                                                    static_cast<std::uint32_t>(source.bits())),
                                     source.flag() ? "2.4.1" : "",
                                     {}};
        ASSERT_EQ(readIdentity(writeIdentity(identity)), identity) << writeIdentity(identity);
    }
}

TEST(ValueText, WritesWhatTheProtocolShows)
{
    OutputStep step{{}, std::chrono::milliseconds(1500)};
    step.outputs.currents[0] = {1.5, -120.0};
    step.outputs.binaryOutputs = 5;
    step.ramp.voltageHertz = 0.1;
    step.endOn = EndCondition({{1, true}, {2, false, true}}, EndCondition::Join::All, DeviceTime(20));
    step.faultDegrees = 90.0;
    EXPECT_EQ(write(OutputSequence{step}), "STEP 1.5,1.5,-120,0,0,0,0,0,0,0,0,0,0,50,50,5\n"
                                           "RAMP 0,0,0,0,0,0,0,0,0,0,0,0,0,0.1\n"
                                           "END ALL,0.00002,1C,2OE\n"
                                           "ANGLE 90\n");
    KesAvary avary;
    avary.channels = {{"IA", false, false, true}, {"UB", true, true, false}};
    EXPECT_EQ(write(EventRecord{7, DeviceTime(12), avary}), "7,12,FAULT,0,\"IA:100\",\"UB:011\"");
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
         {"",
          "1",
          "1,2",
          "0,1,SEQ,1",
          "-1,1,SEQ,1",
          "1,x,SEQ,1",
          "1,99999999999999999999,SEQ,1",
          "1,1,SEQ",
          "1,1,SEQ,2",
          "1,1,SEQ,1,1",
          "1,1,NEWS,1",
          "1,1,INP,1",
          "1,1,INP,1,1,-1",
          "1,1,INP,4294967296,1",
          "1,1,STEP,99999999999999999999",
          "1,1,RELEASE,off",
          "1,1,RELEASE,\"off",
          "1,1,FAULT",
          "1,1,FAULT,0,IA:100",
          "1,1,FAULT,0,\"IA:102\"",
          "1,1,FAULT,0,\"IA100\"",
          "1,1,FAULT,0,\"\"",
          "1,1,FAULT,0" + std::string(2000, ',')}},
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
