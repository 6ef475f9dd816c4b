// How a link begins a connection, and what it makes of answers.

#include "StreamLinkTest.h"

#include <atomic>

using testing::ElementsAre;

namespace KesTest {
namespace {

const std::string nonsense = " gives answers that make no sense.";

TEST_F(StreamLinkTest, ConnectsOnlyToWhatItUnderstands)
{
    const auto unnamed = [](const std::string& text) { return "KESTO 127.8.0.1" + text; };
    const auto good = &ScriptedPeer::good;
    const auto refusal = &ScriptedPeer::refusal;
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {":SYST:PROT", good("2.7"),
         unnamed(" speaks version 2.7 of the protocol, this program speaks version 1.0.")},
        {":SYST:PROT", good("10"),
         unnamed(" speaks version 10 of the protocol, this program speaks version 1.0.")},
        {":SYST:PROT", good("1.1"), ""},
        {":SYST:PROT", good(""), unnamed(nonsense)},
        {":SYST:PROT", "", unnamed(" does not answer.")},
        {":SYST:PROT", ScriptedPeer::hangUp, unnamed(" has ended the connection.")},
        {":SYST:PROT", "SSH-2.0\r\n", unnamed(nonsense)},
        {":SYST:PROT", std::string("\0\xFF\n", 3), unnamed(nonsense)},
        {":SYST:PROT", refusal("-113,\"Undefined header\""), unnamed(": Undefined header")},
        {"*IDN", good("KES,KESTO-3,x,1;1;1"), unnamed(nonsense)},
        {"*IDN", good("KES,KESTO-3,00017,2.4.1;yes;1"), unnamed(nonsense)},
        {"*IDN", good("KES,KESTO-3,00017,2.4.1;0;nan"), ""},
        {":SYST:CONT:TAKE", refusal("-203,\"Command protected;...\""),
         said(" is in use by somebody (10.0.0.1).")},
        {":SYST:CONT:TAKE", refusal("-200,\"Execution error\""), said(": Execution error")},
        {":SYST:WATC", good("many"), said(nonsense)},
        {":EVEN:SUBS", ScriptedPeer::hangUp, said(" has ended the connection.")},
    };
    for (const auto& [question, reply, text] : cases) {
        answer(question, reply);
        makeLink(400ms);
        const auto before = Clock::now();
        EXPECT_EQ(message(link->connect(connection)), text);
        EXPECT_LT(Clock::now() - before, soon);
        EXPECT_EQ(connection, text.empty() ? 1U : 0U);
    }
    EXPECT_TRUE(receiver->getLines().empty());
}

TEST_F(StreamLinkTest, WaitsForItsOwnFormerConnection)
{
    std::string owner = "Test@here";
    std::atomic<int> refusals{3};
    peer.setScript([&](const std::string& commands) -> std::optional<std::string> {
        if (commands.starts_with(":SYST:CONT:TAKE") && refusals-- > 0)
            return ScriptedPeer::refusal("-203,\"Command protected\"");
        if (commands.starts_with(":SYST:CONT:OWN"))
            return ScriptedPeer::good('"' + owner + "\",\"127.0.0.1\"");
        return std::nullopt;
    });
    start();
    link->disconnect();
    refusals = 1000;
    EXPECT_EQ(message(link->connect(connection)), said(" is in use by Test@here (127.0.0.1)."));
    owner = "Other@here";
    refusals = 1000;
    EXPECT_EQ(message(link->connect(connection)), said(" is in use by Other@here (127.0.0.1)."));
    EXPECT_EQ(refusals, 999) << "tried once";
}

TEST_F(StreamLinkTest, HasItsTimeOutForTheWholeBeginning)
{
    peer.setScript([](const std::string&) {
        std::this_thread::sleep_for(150ms);
        return std::nullopt;
    });
    EXPECT_THAT(message(link->connect(connection)), testing::EndsWith(" does not answer."));
}

TEST_F(StreamLinkTest, WrongAnswersEndTheConnection)
{
    struct Case {
        const char* name;
        std::string reply;
        std::string text;
        /// Which questions are answered so.
        const char* questions = ":OUTP";
    };
    const auto good = ScriptedPeer::good();
    const auto silent = said(" does not answer.");
    const Case cases[] = {
        {"none", "", silent, ""},
        {"half of one", good.substr(0, 5), silent, ""},
        {"end of the stream", ScriptedPeer::hangUp, said(" has ended the connection.")},
        {"to the question before", "0,\"No error\";<n-1>\n", said(nonsense)},
        {"to the next question", "0,\"No error\";<n+1>\n", said(nonsense)},
        {"twice", good + good, ""},
        {"a field too many", "1;" + good, said(nonsense)},
        {"no error", "<n>\n", said(nonsense)},
        {"an error that is none", "x,\"y\";<n>\n", said(nonsense), ""},
        {"an error out of range", "99999999999,\"y\";<n>\n", said(nonsense)},
        {"an open quote", "0,\"y;<n>\n", said(nonsense)},
        {"no number", "0,\"No error\"\n", said(nonsense)},
        {"nothing but a line end", "\n", said(nonsense)},
        {"garbage", std::string("\x01\xC0\0\xFF\n", 5), said(nonsense)},
        {"a line that never ends", std::string(3U << 20U, '1'), said(nonsense)},
        {"very many fields", std::string(1U << 20U, ';').append("\n"), said(nonsense)},
    };
    for (const auto& [name, reply, text, questions] : cases) {
        SCOPED_TRACE(name);
        peer.setScript(nullptr);
        receiver->clear();
        start();
        answer(questions, reply);
        const auto before = Clock::now();
        EXPECT_EQ(connectionError(link->startWorkingMode()), text);
        EXPECT_TRUE(receiver->waitFor("lost"));
        EXPECT_LT(Clock::now() - before, soon);
        EXPECT_EQ(connectionError(link->stopOutputs()), said(" is not connected."));
        EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
        EXPECT_EQ(receiver->getLastConnection(), connection);
    }
}

TEST_F(StreamLinkTest, ValuesThatMakeNoSenseEndTheConnection)
{
    KestoIdentity identity;
    KestoState state;
    OutputLimits limits;
    DeviceTime time{0};
    ClockReading reading;
    const std::pair<const char*, std::function<Kes::Result()>> cases[] = {
        {"KES,KESTO-3,1,1;2026-03-31", [&] { return link->identify(identity); }},
        {"1,1,nan,0,IDLE;0", [&] { return link->readState(state); }},
        {"32,300,10,1000,8,4,450,32,1,10000,-1", [&] { return link->readLimits(limits); }},
        {"9223372036854775808", [&] { return link->readTime(time); }},
        {"1", [&] { return link->readClock(reading); }},
    };
    for (const auto& [fields, ask] : cases) {
        peer.setScript(nullptr);
        receiver->clear();
        start();
        answer("", ScriptedPeer::good(fields));
        EXPECT_EQ(connectionError(ask()), said(nonsense)) << fields;
        EXPECT_TRUE(receiver->waitFor("lost"));
    }
}

TEST_F(StreamLinkTest, ToldInTheProgramsWords)
{
    start();
    const std::pair<std::string, std::string> cases[] = {
        {"101,\"Fault lasts\"", ": Fault: the emergency button was pressed"},
        {"102,\"x\"", ": The outputs are not switched on."},
        {"-222,\"Data out of range;IA\"", ": Data out of range;IA"},
        {"-222,\"" + std::string(5000, 'x') + '"', ": " + std::string(300, 'x')},
    };
    for (const auto& [error, text] : cases) {
        answer(":APPL", ScriptedPeer::refusal(error));
        const auto result = link->setOutputs({});
        EXPECT_EQ(message(result), said(text));
        EXPECT_FALSE(isConnectionError(result));
    }
    EXPECT_TRUE(receiver->getLines().empty());

    answer(":APPL", ScriptedPeer::refusal("-203,\"x\""));
    EXPECT_EQ(connectionError(link->setOutputs({})), said(" is not controlled by this program any more."));
    EXPECT_TRUE(receiver->waitFor("lost"));
}

TEST_F(StreamLinkTest, RefusedStepsAreNotStarted)
{
    start();
    answer(":SEQ:CLE;:SEQ:DATA #2", ScriptedPeer::refusal("-223,\"Too much data\""));
    EXPECT_EQ(message(link->runSequence({{{}, 1s}})), said(": Too much data"));
    EXPECT_TRUE(getQuestions(":INIT").empty());
}

} // namespace
} // namespace KesTest
