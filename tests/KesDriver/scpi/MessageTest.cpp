#include <KesDriver/scpi/Arguments.h>
#include <KesDriver/scpi/Block.h>
#include <KesDriver/scpi/ErrorQueue.h>
#include <KesDriver/scpi/LineReader.h>
#include <KesDriver/scpi/Unit.h>

#include <gmock/gmock.h>

using namespace KesDriver::Scpi;
using namespace std::string_literals;
using testing::ElementsAre;

namespace {

std::string describe(const Parameter& parameter)
{
    constexpr const char* kinds[] = {"n", "w", "t", "b", "l"};
    return kinds[static_cast<int>(parameter.kind)] + ("<" + parameter.text + ">");
}

/// Its units, or the codes of what is wrong with them.
std::vector<std::string> readUnits(const std::string& message)
{
    UnitReader reader(message);
    std::vector<std::string> units;
    for (;;) {
        try {
            Unit unit;
            if (!reader.next(unit))
                return units;
            auto text = unit.header + (unit.isQuery ? "?" : "");
            for (const auto& parameter : unit.parameters)
                text += ' ' + describe(parameter);
            units.push_back(text);
        } catch (const Error& error) {
            units.push_back(std::to_string(static_cast<int>(error.getCode())));
        }
    }
}

Arguments arguments(const std::string& parameters)
{
    Unit unit;
    UnitReader("X " + parameters).next(unit);
    return Arguments(unit.parameters);
}

template <typename Action>
int codeOf(Action&& action)
{
    try {
        action();
    } catch (const Error& error) {
        return static_cast<int>(error.getCode());
    }
    return 0;
}

/// All messages of the bytes, given in parts of a size.
std::vector<std::string> readLines(const std::string& bytes, std::size_t part, LineReader& reader)
{
    std::vector<std::string> messages;
    for (std::size_t begin = 0; begin < bytes.size(); begin += part) {
        reader.add(std::string_view(bytes).substr(begin, part));
        while (auto message = reader.next())
            messages.push_back(*message);
    }
    return messages;
}

} // namespace

TEST(UnitReaderTest, SplitsMessagesAndKeepsTheLevel)
{
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"", {}},
        {" ; ;", {}},
        {"*idn?", {"*IDN?"}},
        {"syst:err?;coun?;:outp on", {"SYST:ERR?", "SYST:COUN?", "OUTP w<ON>"}},
        {"SYST:ERR:COUN?;*OPC?;NEXT?;:ABOR", {"SYST:ERR:COUN?", "*OPC?", "SYST:ERR:NEXT?", "ABOR"}},
        {"a 1 ,-2.5E3mA, +.5, 5.", {"A n<1> n<-2.5E3mA> n<+.5> n<5.>"}},
        {"a 'it''s; \"x\",y' ;b \"(@#\"", {"A t<it's; \"x\",y>", "B t<(@#>"}},
        {"a (@1,3:5),2 ;b?", {"A l<1,3:5> n<2>", "B?"}},
        {"a #15\n;,' ,on;b", {"A b<\n;,' > w<ON>", "B"}},
        {"a x,#12\r\n", {"A w<X> b<\r\n>"}},
        {"a #10;b", {"A b<>", "B"}},
        // What is wrong leaves the others alone,
        {"a::b;c 1x2;d ,;e;f\xFF;*a:b;?;g:", {"-102", "-121", "-109", "E", "-101", "-102", "-102", "-102"}},
        {"a +-1;b --1;c .;d 1e999;e -inf;f 1..2;g $;h \"x\"y",
         {"-121", "-121", "-120", "-123", "-121", "-121", "-101", "-151"}},
        {"a (1);b (@1;c", {"-171", "-171"}},
        {"a #0xyz;b #2a1;c #;d #12abc", {"-161", "-161", "-161", "-161"}},
        // but for what is not closed.
        {"a;b 'c;d", {"A", "-151"}},
        {"a #15ab;c", {"-161"}},
    };
    for (const auto& [message, units] : cases)
        EXPECT_EQ(readUnits(message), units) << message;
}

TEST(LineReaderTest, PutsMessagesTogetherHoweverTheyArrive)
{
    const std::string bytes =
        "*IDN?\r\nA #14\n\n\r\n,'x#19\nB \"#15\"\n\nC #12\r\r\r\n#15\nD #3005abcd\n\r\nE #11\r\n";
    const std::vector<std::string> messages = {"*IDN?", "A #14\n\n\r\n,'x#19", "B \"#15\"", "", "C #12\r\r",
                                               "#15",   "D #3005abcd\n",       "E #11\r"};
    for (const std::size_t part : {std::size_t{1}, std::size_t{2}, std::size_t{7}, bytes.size()}) {
        LineReader reader;
        EXPECT_EQ(readLines(bytes, part, reader), messages) << part;
        EXPECT_FALSE(reader.isOverrun());
    }
}

TEST(LineReaderTest, GivesUpOnWhatIsTooLong)
{
    const LineReader::Limits limits{10, 20};
    const std::tuple<std::string, std::size_t, bool> cases[] = {
        {"0123456789\nnext\n", 2, false},
        {"ok\n01234567890", 1, true},
        {std::string("A #220").append(20, '\n').append("\nB\n"), 2, false},
        {"A #221", 0, true},
        {"A #212xxxxxxxxxxxx,#19", 0, true},
        {"A #9999999999", 0, true},
    };
    for (const auto& [bytes, messages, overrun] : cases) {
        LineReader reader(limits);
        EXPECT_EQ(readLines(bytes, 3, reader).size(), messages) << bytes;
        EXPECT_EQ(reader.isOverrun(), overrun) << bytes;
    }
}

TEST(ErrorQueueTest, TellsTheOldestFirstAndSaysWhenOthersAreLost)
{
    ErrorQueue queue;
    EXPECT_EQ(queue.take().toAnswer(), "0,\"No error\"");
    for (std::size_t i = 0; i < ErrorQueue::capacity + 5; ++i)
        queue.add(Error(ErrorCode::OutOfRange, std::to_string(i) + " \"A\"\n"));
    EXPECT_EQ(queue.getCount(), 32U);
    EXPECT_EQ(queue.take().toAnswer(), "-222,\"Data out of range;0 \"\"A\"\" \"");
    for (std::size_t i = 0; i < 30; ++i)
        queue.take();
    EXPECT_EQ(queue.take().toAnswer(), "-350,\"Queue overflow\"");
    EXPECT_EQ(queue.getCount(), 0U);
    // A text ends between two characters.
    EXPECT_EQ(std::string(Error(ErrorCode{101}, "x" + std::string(300, 'a') + "\xD0\xB0").what()).size(),
              255U);
    const std::string russian = Error(ErrorCode{101}, std::string(241, 'a') + "\xD0\xB0").what();
    EXPECT_EQ(russian, "Device error;" + std::string(241, 'a'));
}

TEST(ArgumentsTest, ReadsEachParameterAsWhatItHasToBe)
{
    auto numbers = arguments("1.1 ms,2,-3 KA,50hz,90 deg");
    EXPECT_EQ(numbers.readNumber(Quantity::Time), 0.0011);
    EXPECT_EQ(numbers.readNumber(Quantity::Current), 2.0);
    EXPECT_EQ(numbers.readNumber(Quantity::Current), -3000.0);
    EXPECT_EQ(numbers.readNumber(Quantity::Frequency), 50.0);
    EXPECT_EQ(numbers.readNumber(Quantity::Angle), 90.0);
    EXPECT_EQ(codeOf([&] { numbers.readNumber(); }), -109);

    auto others = arguments("ON,0,over,QUICK,(@1,3:4,3),#13a\nb,\"x\",2OE");
    EXPECT_TRUE(others.readBoolean());
    EXPECT_FALSE(others.readBoolean());
    EXPECT_EQ(others.readChoice({"LOST", "OVERload"}), 1U);
    EXPECT_EQ(others.readChoice({"QUICk", "OVERload"}), 0U);
    EXPECT_THAT(others.readChannels(4), ElementsAre(1, 3, 4));
    EXPECT_EQ(others.readBlock(), "a\nb");
    EXPECT_EQ(others.readText(), "x");
    EXPECT_EQ(codeOf([&] { others.end(); }), -108);
    EXPECT_EQ(others.readToken(), "2OE");
    others.end();
}

TEST(ArgumentsTest, RefusesWhatItIsNot)
{
    const auto number = [](Arguments& from) { from.readNumber(Quantity::Current); };
    const auto integer = [](Arguments& from) { from.readInteger(0, 10); };
    const auto boolean = [](Arguments& from) { from.readBoolean(); };
    const auto choice = [](Arguments& from) { from.readChoice({"OVERload"}); };
    const auto channels = [](Arguments& from) { from.readChannels(3); };
    const std::tuple<const char*, void (*)(Arguments&), int> cases[] = {
        {"ON", number, -104},      {"1 V", number, -131},      {"1 A", integer, -138},
        {"1.5", integer, -120},    {"11", integer, -222},      {"-1", integer, -222},
        {"1e300", integer, -222},  {"2", boolean, -222},       {"YES", boolean, -224},
        {"\"ON\"", boolean, -104}, {"OVERL", choice, -224},    {"(@0)", channels, -222},
        {"(@4)", channels, -222},  {"(@1:x)", channels, -171}, {"(@)", channels, -171},
        {"(@1,)", channels, -171}, {"(@-1)", channels, -171},  {"(@1:99999999999)", channels, -222},
    };
    for (const auto& [text, read, code] : cases)
        EXPECT_EQ(codeOf([&, &run = read, &given = text] {
                      auto from = arguments(given);
                      run(from);
                  }),
                  code)
            << text;
}
