#include "../RecordingReceiver.h"
#include "ScriptedPeer.h"

#include <KesDriver/ConnectionError.h>
#include <KesDriver/net/StreamLink.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::ElementsAreArray;

namespace {

using Clock = std::chrono::steady_clock;
using Reply = std::optional<std::string>;

/// How long a link takes at most to notice what goes wrong at once.
constexpr auto soon = 1s;

std::string connectionError(const Kes::Result& result)
{
    return result || isConnectionError(result) ? message(result) : "no connection error: " + message(result);
}

class StreamLinkTest : public testing::Test {
protected:
    StreamLinkTest() { link->setReceiver(receiver); }
    ~StreamLinkTest() override { link.reset(); }

    std::unique_ptr<StreamLink> makeLink(std::chrono::milliseconds timeout, StreamConnector connector)
    {
        return std::make_unique<StreamLink>(StreamLink::Settings{std::move(connector), "127.8.0.1",
                                                                 "Test@here", [timeout] { return timeout; }});
    }
    void start() { ASSERT_EQ(message(link->connect(connection)), ""); }
    /// From now on a question is answered so; every other one as usual.
    void answer(const std::string& question, std::function<Reply(std::uint64_t)> reply)
    {
        peer.setScript([=](const std::string& commands, std::uint64_t number) -> Reply {
            return commands.starts_with(question) ? reply(number) : std::nullopt;
        });
    }
    bool isAsked(const std::string& beginning) const
    {
        const auto before = Clock::now();
        while (Clock::now() - before < 10s) {
            for (const auto& question : peer.getQuestions())
                if (question.starts_with(beginning))
                    return true;
            std::this_thread::sleep_for(1ms);
        }
        return false;
    }
    static std::string said(const std::string& text) { return "KESTO-3 No. 00017 (127.8.0.1)" + text; }

    ScriptedPeer peer;
    std::shared_ptr<RecordingReceiver> receiver = std::make_shared<RecordingReceiver>();
    std::unique_ptr<StreamLink> link = makeLink(400ms, peer.getConnector());
    ConnectionNumber connection = 0;
};

TEST_F(StreamLinkTest, ConnectsAndTakesControl)
{
    start();
    EXPECT_EQ(connection, 1U);
    EXPECT_TRUE(link->isSimulated());
    EXPECT_THAT(peer.getQuestions(),
                ElementsAre(":SYST:PROT?", "*IDN?;:SYST:SIM?;:SYST:LIM?", ":SYST:CONT:TAKE \"Test@here\"",
                            ":SYST:WATC 1;:EVEN:LAST?", ":EVEN:SUBS ON,6"));
    const auto again = link->connect(connection);
    EXPECT_EQ(message(again), said(" is connected already."));
    EXPECT_FALSE(isConnectionError(again));
    link->disconnect();
    EXPECT_EQ(connectionError(link->stopOutputs()), said(" is not connected."));
    start();
    EXPECT_EQ(connection, 2U);
    EXPECT_TRUE(receiver->getLines().empty());
}

TEST_F(StreamLinkTest, ReadsWhatTheDeviceTells)
{
    start();
    KestoIdentity identity;
    ASSERT_TRUE(link->identify(identity));
    EXPECT_EQ(identity, (KestoIdentity{{3, 17}, "2.4.1", "2026-03-31"}));
    KestoState state;
    ASSERT_TRUE(link->readState(state));
    EXPECT_FALSE(state.isReady);
    EXPECT_TRUE(state.isAuxDCEnabled);
    EXPECT_EQ(state.auxDCVolts, 220.0);
    EXPECT_EQ(state.error, "IA - overload");
    OutputLimits limits;
    limits.binaryInputs = 0;
    ASSERT_TRUE(link->readLimits(limits));
    EXPECT_EQ(limits, OutputLimits{});
    DeviceTime time{0};
    ASSERT_TRUE(link->readTime(time));
    EXPECT_EQ(time, 1ms);
    ClockReading reading;
    ASSERT_TRUE(link->readClock(reading));
    EXPECT_EQ(reading.common, CommonTime(-2000));
}

TEST_F(StreamLinkTest, ConnectsOnlyToWhatItUnderstands)
{
    struct Case {
        const char* question;
        std::function<Reply(std::uint64_t)> reply;
        std::string text;
    };
    const auto gives = [](const char* fields) {
        return [=](std::uint64_t number) { return ScriptedPeer::good(fields, number); };
    };
    const auto refuses = [](const char* error) {
        return [=](std::uint64_t number) { return ScriptedPeer::refusal(error, number); };
    };
    const auto hangsUp = [this](std::uint64_t) {
        peer.close();
        return "";
    };
    const auto unnamed = [](const std::string& text) { return "KESTO 127.8.0.1" + text; };
    const auto nonsense = " gives answers that make no sense.";
    const auto silent = [](std::uint64_t) { return ""; };
    const Case cases[] = {
        {":SYST:PROT", gives("2.7"),
         unnamed(" speaks version 2.7 of the protocol, this program speaks version 1.0.")},
        {":SYST:PROT", gives("10"),
         unnamed(" speaks version 10 of the protocol, this program speaks version 1.0.")},
        {":SYST:PROT", gives("1.1"), ""},
        {":SYST:PROT", silent, unnamed(" does not answer.")},
        {":SYST:PROT", hangsUp, unnamed(" has ended the connection.")},
        {":SYST:PROT", [](std::uint64_t) { return "SSH-2.0\r\n"; }, unnamed(nonsense)},
        {":SYST:PROT", [](std::uint64_t) { return std::string("\0\xFF\n", 3); }, unnamed(nonsense)},
        {":SYST:PROT", refuses("-113,\"Undefined header\""), unnamed(": Undefined header")},
        {"*IDN", gives("KES,KESTO-3,x,1;1;1"), unnamed(nonsense)},
        {"*IDN", gives("KES,KESTO-3,00017,2.4.1;yes;1"), unnamed(nonsense)},
        {"*IDN", gives("KES,KESTO-3,00017,2.4.1;0;nan"), ""},
        {":SYST:CONT:TAKE", refuses("-203,\"Command protected;...\""),
         said(" is in use by somebody (10.0.0.1).")},
        {":SYST:CONT:TAKE", refuses("-200,\"Execution error\""), said(": Execution error")},
        {":SYST:WATC", gives("many"), said(nonsense)},
        {":EVEN:SUBS", hangsUp, said(" has ended the connection.")},
    };
    for (const auto& [question, reply, text] : cases) {
        answer(question, reply);
        link = makeLink(400ms, peer.getConnector());
        link->setReceiver(receiver);
        const auto before = Clock::now();
        EXPECT_EQ(message(link->connect(connection)), text);
        EXPECT_LT(Clock::now() - before, soon);
        EXPECT_EQ(connection, text.empty() ? 1U : 0U);
    }
    link = makeLink(400ms, [](GCancellable*) { return StreamPointer(); });
    EXPECT_EQ(connectionError(link->connect(connection)),
              unnamed(" cannot be reached: there is no device at this address."));
    EXPECT_TRUE(receiver->getLines().empty());
}

TEST_F(StreamLinkTest, WaitsForItsOwnFormerConnection)
{
    std::atomic<int> refusals{3};
    peer.setScript([&](const std::string& commands, std::uint64_t number) -> Reply {
        if (commands.starts_with(":SYST:CONT:TAKE") && refusals-- > 0)
            return ScriptedPeer::refusal("-203,\"Command protected\"", number);
        if (commands.starts_with(":SYST:CONT:OWN"))
            return ScriptedPeer::good("\"Test@here\",\"127.0.0.1\"", number);
        return std::nullopt;
    });
    start();
    link->disconnect();
    refusals = 1000;
    EXPECT_EQ(message(link->connect(connection)), said(" is in use by Test@here (127.0.0.1)."));
}

TEST_F(StreamLinkTest, WrongAnswersEndTheConnection)
{
    struct Case {
        const char* name;
        std::function<std::string(std::uint64_t)> reply;
        std::string text;
        /// Which questions are answered so.
        const char* questions = ":OUTP";
    };
    const auto good = [](std::uint64_t number) { return ScriptedPeer::good("", number); };
    const auto nonsense = said(" gives answers that make no sense.");
    const auto silent = said(" does not answer.");
    const Case cases[] = {
        {"none", [](std::uint64_t) { return ""; }, silent, ""},
        {"half of one", [&](std::uint64_t n) { return good(n).substr(0, 5); }, silent, ""},
        {"end of the stream",
         [&](std::uint64_t) {
             peer.close();
             return "";
         },
         said(" has ended the connection.")},
        {"to the question before", [&](std::uint64_t n) { return good(n - 1); }, nonsense},
        {"to the next question", [&](std::uint64_t n) { return good(n + 1); }, nonsense},
        {"twice", [&](std::uint64_t n) { return good(n) + good(n); }, ""},
        {"with one before", [&](std::uint64_t n) { return good(n - 1) + good(n); }, nonsense},
        {"a field too many", [&](std::uint64_t n) { return "1;" + good(n); }, nonsense},
        {"no error", [](std::uint64_t n) { return std::to_string(n) + '\n'; }, nonsense},
        {"an error that is none", [](std::uint64_t n) { return "x,\"y\";" + std::to_string(n) + '\n'; },
         nonsense, ""},
        {"an error out of range",
         [](std::uint64_t n) { return "99999999999,\"y\";" + std::to_string(n) + '\n'; }, nonsense},
        {"an open quote", [](std::uint64_t n) { return "0,\"y;" + std::to_string(n) + '\n'; }, nonsense},
        {"no number", [](std::uint64_t) { return "0,\"No error\"\n"; }, nonsense},
        {"nothing but a line end", [](std::uint64_t) { return "\n"; }, nonsense},
        {"garbage", [](std::uint64_t) { return std::string("\x01\xC0\0\xFF\n", 5); }, nonsense},
        {"a line that never ends", [](std::uint64_t) { return std::string(3U << 20U, '1'); }, nonsense},
        {"very many fields", [](std::uint64_t) { return std::string(1U << 20U, ';').append("\n"); },
         nonsense},
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
    const std::pair<const char*, std::function<Kes::Result()>> cases[] = {
        {"KES,KESTO-3,1,1;2026-03-31",
         [this] {
             KestoIdentity identity;
             return link->identify(identity);
         }},
        {"1,1,nan,0,IDLE;0",
         [this] {
             KestoState state;
             return link->readState(state);
         }},
        {"32,300,10,1000,8,4,450,32,1,10000,-1",
         [this] {
             OutputLimits limits;
             return link->readLimits(limits);
         }},
        {"9223372036854775808",
         [this] {
             DeviceTime time;
             return link->readTime(time);
         }},
        {"1",
         [this] {
             ClockReading reading;
             return link->readClock(reading);
         }},
    };
    for (const auto& [fields, ask] : cases) {
        peer.setScript(nullptr);
        receiver->clear();
        start();
        peer.setScript([fields = fields](const std::string&, std::uint64_t number) {
            return ScriptedPeer::good(fields, number);
        });
        EXPECT_EQ(connectionError(ask()), said(" gives answers that make no sense.")) << fields;
        EXPECT_TRUE(receiver->waitFor("lost"));
    }
}

TEST_F(StreamLinkTest, AnswersMayComeInPiecesAndTogether)
{
    start();
    answer(":OUTP", [this](std::uint64_t number) {
        for (const char c : ScriptedPeer::good("", number)) {
            peer.send(std::string(1, c));
            std::this_thread::sleep_for(1ms);
        }
        return "";
    });
    EXPECT_EQ(message(link->startWorkingMode()), "");
    answer(":OUTP", [](std::uint64_t number) {
        return "!6,10,STEP,0\r\n!7,20,SEQ,1\n" + ScriptedPeer::good("", number) + "!8,30,INP,1,1\n";
    });
    EXPECT_EQ(message(link->startWorkingMode()), "");
    EXPECT_TRUE(receiver->waitFor("input"));
    EXPECT_THAT(receiver->getLines(), ElementsAre("step 0 0", "finished complete 10", "input 1 closed 20"));
}

TEST_F(StreamLinkTest, ToldInTheProgramsWords)
{
    start();
    const std::pair<const char*, std::string> cases[] = {
        {"101,\"Fault lasts\"", ": Fault: the emergency button was pressed"},
        {"102,\"x\"", ": The outputs are not switched on."},
        {"103,\"x\"", ": A sequence is running."},
        {"104,\"x\"", ": A sequence waits for its start."},
        {"105,\"x\"", ": There is no sequence that waits for its start."},
        {"106,\"x\"", ": The moment of the start has passed."},
        {"-222,\"Data out of range;IA\"", ": Data out of range;IA"},
    };
    for (const auto& [error, text] : cases) {
        answer(":APPL",
               [error = error](std::uint64_t number) { return ScriptedPeer::refusal(error, number); });
        const auto result = link->setOutputs({});
        EXPECT_EQ(message(result), said(text));
        EXPECT_FALSE(isConnectionError(result));
    }
    OutputState outputs;
    outputs.currents[1].magnitude = 33.0;
    EXPECT_EQ(message(link->setOutputs(outputs)), said(": IB: 33 A is above the limit of 32 A."));
    EXPECT_EQ(message(link->runSequence({{outputs, 1s}})),
              said(": Step 1. IB: 33 A is above the limit of 32 A."));
    EXPECT_EQ(message(link->setAuxDC(true, 5)), said(": Auxiliary supply: 5 V is below the limit of 12 V."));
    EXPECT_TRUE(receiver->getLines().empty());

    answer(":APPL", [](std::uint64_t number) { return ScriptedPeer::refusal("-203,\"x\"", number); });
    EXPECT_EQ(connectionError(link->setOutputs({})), said(" is not controlled by this program any more."));
    EXPECT_TRUE(receiver->waitFor("lost"));
}

TEST_F(StreamLinkTest, RefusedStepsAreNotStarted)
{
    start();
    answer(":SEQ:CLE;:SEQ:DATA #2",
           [](std::uint64_t number) { return ScriptedPeer::refusal("-223,\"Too much data\"", number); });
    EXPECT_EQ(message(link->runSequence({{{}, 1s}})), said(": Too much data"));
    const auto questions = peer.getQuestions();
    EXPECT_EQ(std::count(questions.begin(), questions.end(), ":INIT"), 0);
}

TEST_F(StreamLinkTest, EventsThatMakeNoSense)
{
    struct Case {
        const char* events;
        std::vector<std::string> lines;
    };
    const std::string nonsense = "input 0 open -1";
    const Case cases[] = {
        {"!6,10,INP,1,1\n!7,10,INP,1,0\n", {"input 1 closed 10", "input 1 open 10"}},
        // Twice, again, backwards, in the past, unreadable, unknown, from nowhere.
        {"!6,10,INP,1,1\n!6,10,INP,1,1\n!7,11,INP,2,1\n", {"input 1 closed 10", nonsense}},
        {"!5,10,INP,1,1\n", {nonsense}},
        {"!6,10,INP,1,1\n!7,9,INP,1,0\n", {"input 1 closed 10", nonsense}},
        {"!6,10,FAULT,0\n!7,9,FAULT,0\n", {"fault", nonsense}},
        {"!6,x,INP,1,1\n!7,10,INP,1,1\n", {nonsense}},
        {"!6,10,NEWS\n", {nonsense}},
        {"!\n", {nonsense}},
        {"!2000,10,INP,1,1\n", {nonsense}},
        {"!18446744073709551615,10,INP,1,1\n", {nonsense}},
        {"!6,10,RELEASE,\"no word\"\n!7,10,INP,1,1\n", {"lost"}},
    };
    for (const auto& [events, lines] : cases) {
        receiver = std::make_shared<RecordingReceiver>();
        link->setReceiver(receiver);
        start();
        peer.send(events);
        EXPECT_TRUE(receiver->waitFor(lines.back())) << events;
        (void)link->stopOutputs();
        EXPECT_THAT(receiver->getLines(), ElementsAreArray(lines)) << events;
        link->disconnect();
    }
}

TEST_F(StreamLinkTest, AsksOnceForWhatIsMissing)
{
    struct Case {
        std::string events;
        std::string answer;
        std::vector<std::string> lines;
    };
    const std::string nonsense = "input 0 open -1";
    const std::string later = "!8,30,INP,3,1\n!9,40,INP,4,1\n";
    const std::vector<std::string> all = {"input 1 closed 10", "input 2 closed 20", "input 3 closed 30",
                                          "input 4 closed 40"};
    const Case cases[] = {
        {later, R"("6,10,INP,1,1","7,20,INP,2,1")", all},
        {later, R"("6,10,INP,1,1")", {all[0], nonsense}},
        {later, R"("7,20,INP,2,1","6,10,INP,1,1")", {nonsense}},
        {later, R"("6,10,INP,1,1","7,20,INP,2,1","8,30,INP,3,1")", {all[0], all[1], all[2], nonsense}},
        {later, R"("6,10,INP,1,1","7,31,INP,2,1")", {all[0], "input 2 closed 31", nonsense}},
        {later, R"("")", {nonsense}},
        {later, "6", {nonsense}},
        {"!8,30,INP,3,1\n!10,50,INP,4,1\n",
         R"("6,10,INP,1,1","7,20,INP,2,1")",
         {all[0], all[1], all[2], nonsense}},
    };
    for (const auto& [events, reply, lines] : cases) {
        receiver = std::make_shared<RecordingReceiver>();
        link->setReceiver(receiver);
        start();
        answer(":EVEN:DATA? 6,2",
               [reply = reply](std::uint64_t number) { return ScriptedPeer::good(reply, number); });
        peer.send(events);
        EXPECT_TRUE(receiver->waitFor(lines.back())) << reply;
        (void)link->stopOutputs();
        EXPECT_THAT(receiver->getLines(), ElementsAreArray(lines)) << reply;
        link->disconnect();
    }
    receiver = std::make_shared<RecordingReceiver>();
    link->setReceiver(receiver);
    start();
    answer(":EVEN:DATA?",
           [](std::uint64_t number) { return ScriptedPeer::refusal("-222,\"Forgotten\"", number); });
    peer.send(later);
    EXPECT_TRUE(receiver->waitFor(nonsense));
}

TEST_F(StreamLinkTest, StepsOfAnEarlierRunAreNotTakenForTheNext)
{
    start();
    peer.send("!6,10,STEP,0\n!7,20,STEP,1\n");
    ASSERT_TRUE(receiver->waitFor("step 1"));
    answer(":INIT", [this](std::uint64_t number) {
        peer.send("!8,30,STEP,2\n");
        receiver->waitFor("step 2");
        return ScriptedPeer::good("", number) +
               "!9,40,STEP,3\n!10,50,INP,1,1,3\n!11,60,SEQ,0\n!12,70,STEP,0\n!13,80,STEP,1\n";
    });
    EXPECT_EQ(message(link->runSequence({{{}, 1s}})), "");
    ASSERT_TRUE(receiver->waitFor("step 1", 2));
    EXPECT_THAT(receiver->getLines(), ElementsAre("step 0 0", "step 1 10", "step 2 20", "input 1 closed 40",
                                                  "finished incomplete 50", "step 0 0", "step 1 10"));
}

TEST_F(StreamLinkTest, DeviceHearsOfItsControllerAllTheTime)
{
    start();
    std::this_thread::sleep_for(1s);
    const auto questions = peer.getQuestions();
    EXPECT_GE(std::count(questions.begin(), questions.end(), ":SYST:CLOC?"), 4);
    answer(":SYST:CLOC?", [](std::uint64_t) { return ""; });
    const auto before = Clock::now();
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_LT(Clock::now() - before, soon);
    EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
}

TEST_F(StreamLinkTest, DeviceThatDoesNotReadIsNoticed)
{
    start();
    std::promise<void> goOn;
    answer(":OUTP", [&](std::uint64_t number) {
        goOn.get_future().wait();
        return ScriptedPeer::good("", number);
    });
    std::thread caller([this] { (void)link->startWorkingMode(); });
    ASSERT_TRUE(isAsked(":OUTP"));
    // More than the stream can hold.
    const auto before = Clock::now();
    EXPECT_TRUE(isConnectionError(link->runSequence(OutputSequence(10000, {{}, 1s}))));
    EXPECT_LT(Clock::now() - before, soon);
    goOn.set_value();
    caller.join();
    EXPECT_TRUE(receiver->waitFor("lost"));
}

TEST_F(StreamLinkTest, DisconnectEndsWhatIsUnderWay)
{
    link = makeLink(60s, peer.getConnector());
    start();
    answer(":OUTP", [](std::uint64_t) { return ""; });
    std::vector<std::thread> callers;
    std::atomic<int> failures{0};
    for (int i = 0; i < 4; ++i)
        callers.emplace_back([&] {
            failures += connectionError(link->startWorkingMode()) == said(" is not connected.") ? 1 : 0;
        });
    ASSERT_TRUE(isAsked(":OUTP"));
    const auto before = Clock::now();
    link->disconnect();
    EXPECT_LT(Clock::now() - before, 100ms);
    for (auto& caller : callers)
        caller.join();
    EXPECT_EQ(failures, 4);
    EXPECT_LT(Clock::now() - before, soon);
    while (!peer.hasEnded() && Clock::now() - before < 10s)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(peer.hasEnded());
    EXPECT_TRUE(receiver->getLines().empty());
}

TEST_F(StreamLinkTest, DisconnectEndsAnAttempt)
{
    std::promise<void> isTrying;
    link = makeLink(60s, [&](GCancellable* cancellable) {
        isTrying.set_value();
        GPollFD poll{};
        g_cancellable_make_pollfd(cancellable, &poll);
        g_poll(&poll, 1, -1);
        g_cancellable_release_fd(cancellable);
        return StreamPointer();
    });
    auto attempt = std::async(std::launch::async, [&] { return connectionError(link->connect(connection)); });
    isTrying.get_future().wait();
    const auto before = Clock::now();
    link->disconnect();
    EXPECT_EQ(attempt.get(), "KESTO 127.8.0.1 is not connected.");
    EXPECT_LT(Clock::now() - before, 100ms);
}

TEST_F(StreamLinkTest, MayGoInsideAReport)
{
    std::promise<void> isGone;
    receiver->onLine = [&](const std::string& line) {
        EXPECT_EQ(line, "input 1 closed 10");
        EXPECT_EQ(message(link->stopOutputs()), "");
        link.reset();
        isGone.set_value();
    };
    start();
    peer.send("!6,10,INP,1,1\n!7,20,INP,1,0\n");
    isGone.get_future().wait();
}

TEST_F(StreamLinkTest, CallsOverlapAndConnectionsFollowEachOther)
{
    std::atomic<bool> isOver{false};
    std::atomic<int> answered{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            while (!isOver) {
                DeviceTime time{0};
                if (link->readTime(time)) {
                    EXPECT_EQ(time, 1ms);
                    ++answered;
                }
            }
        });
    for (ConnectionNumber round = 1; round <= 100; ++round) {
        start();
        EXPECT_EQ(connection, round);
        peer.send("!6,10,INP,1,1\n");
        const auto enough = answered + 5;
        while (answered < enough)
            std::this_thread::yield();
        link->disconnect();
    }
    isOver = true;
    for (auto& thread : threads)
        thread.join();
    for (const auto& line : receiver->getLines())
        EXPECT_EQ(line, "input 1 closed 10");
}

} // namespace
