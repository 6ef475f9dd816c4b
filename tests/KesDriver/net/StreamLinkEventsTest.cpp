// What a link makes of the events of its device.

#include "StreamLinkTest.h"

#include <KesDriver/net/detail/EventOrder.h>

#include <atomic>

using testing::ElementsAre;
using testing::ElementsAreArray;

namespace KesTest {
namespace {

using StreamLinkEventsTest = StreamLinkTest;

TEST_F(StreamLinkEventsTest, ComeWholeOnceAndInOrderOrAreNonsense)
{
    /// What comes, what is told, and what the device says when it is asked for events 6 and 7.
    struct Case {
        std::string events;
        std::vector<std::string> lines;
        std::string missing = {};
    };
    const std::string nonsense = "input 0 open -1";
    const std::string later = "!8,30,INP,3,1\n!9,40,INP,4,1\n";
    const std::vector<std::string> all = {"input 1 closed 10", "input 2 closed 20", "input 3 closed 30",
                                          "input 4 closed 40"};
    const Case cases[] = {
        {"!6,10,INP,1,1\n!7,10,INP,1,0\n", {all[0], "input 1 open 10"}},
        {"!6,10,RELEASE,\"no word\"\n!7,10,INP,1,1\n", {"lost"}},
        // Twice, again, backwards, in the past, unreadable, unknown, from nowhere.
        {"!6,10,INP,1,1\n!6,10,INP,1,1\n!7,11,INP,2,1\n", {all[0], nonsense}},
        {"!5,10,INP,1,1\n", {nonsense}},
        {"!6,10,INP,1,1\n!7,9,INP,1,0\n", {all[0], nonsense}},
        {"!6,10,FAULT,0\n!7,9,FAULT,0\n", {"fault", nonsense}},
        {"!6,x,INP,1,1\n!7,10,INP,1,1\n", {nonsense}},
        {"!6,10,NEWS\n", {nonsense}},
        {"!\n", {nonsense}},
        {"!2000,10,INP,1,1\n", {nonsense}},
        {"!18446744073709551615,10,INP,1,1\n", {nonsense}},
        // What is missing is asked for once.
        {later, all, R"("6,10,INP,1,1","7,20,INP,2,1")"},
        {later, {all[0], nonsense}, R"("6,10,INP,1,1")"},
        {later, {nonsense}, R"("7,20,INP,2,1","6,10,INP,1,1")"},
        {later, {all[0], all[1], all[2], nonsense}, R"("6,10,INP,1,1","7,20,INP,2,1","8,30,INP,3,1")"},
        {later, {all[0], "input 2 closed 31", nonsense}, R"("6,10,INP,1,1","7,31,INP,2,1")"},
        {later, {nonsense}, R"("")"},
        {later, {nonsense}, "6"},
        {later, {nonsense}, "-222,\"Forgotten\""},
        {"!8,30,INP,3,1\n!10,50,INP,4,1\n", {nonsense}, R"("6,10,INP,1,1","7,20,INP,2,1")"},
    };
    for (const auto& [events, lines, missing] : cases) {
        SCOPED_TRACE(events + missing);
        receiver = std::make_shared<RecordingReceiver>();
        link->setReceiver(receiver);
        start();
        answer(":SYST:BOOT?;:EVEN:DATA? 6,2", missing.starts_with('-') ? ScriptedPeer::refusal(missing)
                                                                       : ScriptedPeer::good("7;" + missing));
        peer.send(events);
        EXPECT_TRUE(receiver->waitFor(lines.back()));
        (void)link->stopOutputs();
        EXPECT_THAT(receiver->getLines(), ElementsAreArray(lines));
        link->disconnect();
    }
}

TEST_F(StreamLinkEventsTest, AreNotHeldBackWithoutEnd)
{
    EventOrder order;
    std::uint64_t number = 8;
    for (; number < 66000 && !order.isBroken(); ++number)
        EXPECT_TRUE(order.take(std::to_string(number) + ",10,INP,1,1").empty());
    EXPECT_EQ(number, 8U + 65536U + 1U);
    // Nor is more asked for than a device gives at once.
    for (const std::uint64_t missing : {1000U, 1001U}) {
        EventOrder other;
        other.take(std::to_string(1 + missing) + ",10,INP,1,1");
        EXPECT_EQ(other.hasGap(), missing == 1000);
    }
}

TEST_F(StreamLinkEventsTest, BehindAGapAreOutOfOrderBeforeTheMissingOnesAreThere)
{
    for (const char* second : {"6,10,INP,1,1", "7,10,INP,1,1", "9,10,INP,1,1"}) {
        EventOrder order;
        order.begin(5);
        order.take("7,10,INP,1,1");
        EXPECT_FALSE(order.isBroken());
        order.take(second);
        EXPECT_TRUE(order.isBroken()) << second;
    }
}

TEST_F(StreamLinkEventsTest, MayComeInPiecesAndWithAnAnswer)
{
    start();
    answer(":OUTP", [this] {
        for (const char c : std::string("!6,10,STEP,0\r\n"))
            peer.send(std::string(1, c));
        return "!7,20,SEQ,1\n" + ScriptedPeer::good() + "!8,30,INP,1,1\n";
    });
    EXPECT_EQ(message(link->startWorkingMode()), "");
    EXPECT_TRUE(receiver->waitFor("input"));
    EXPECT_THAT(receiver->getLines(), ElementsAre("step 0 0", "finished complete 10", "input 1 closed 20"));
}

TEST_F(StreamLinkEventsTest, AreHeardBeforeTheDeviceGetsANewSequence)
{
    std::atomic<bool> isHeard{false};
    receiver->onLine([&](const std::string&) {
        std::this_thread::sleep_for(30ms);
        isHeard = true;
    });
    start();
    peer.send("!6,10,SEQ,1\n");
    ASSERT_TRUE(receiver->waitFor("finished"));
    bool wasHeard = false;
    answer(":INIT", [&] {
        wasHeard = isHeard;
        return ScriptedPeer::good();
    });
    EXPECT_EQ(message(link->runSequence({{{}, 1s}})), "");
    EXPECT_TRUE(wasHeard);
}

TEST_F(StreamLinkEventsTest, LetTheirReceiverGiveASequenceAndEndWhenItThrows)
{
    receiver->onLine([this](const std::string& line) {
        if (!line.starts_with("input 1"))
            return;
        auto shortest = Clock::duration::max();
        for (int i = 0; i < 5; ++i) {
            const auto before = Clock::now();
            EXPECT_EQ(message(link->runSequence({{{}, 1s}})), "");
            shortest = std::min(shortest, Clock::now() - before);
        }
        EXPECT_LT(shortest, 80ms) << "it does not wait for itself";
        throw std::runtime_error("thrown by a receiver");
    });
    start();
    peer.send("!6,10,INP,1,1\n!7,20,INP,2,1\n");
    // Who has missed an event must not take what follows for the whole.
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_EQ(receiver->getLines().size(), 2U);
    EXPECT_EQ(message(link->stopOutputs()), said(" is not connected."));
}

TEST_F(StreamLinkEventsTest, StepsOfAnEarlierRunAreNotTakenForTheNext)
{
    start();
    peer.send("!6,10,STEP,0\n!7,20,STEP,1\n");
    ASSERT_TRUE(receiver->waitFor("step 1"));
    answer(":INIT", [this] {
        peer.send("!8,30,STEP,2\n");
        receiver->waitFor("step 2");
        return ScriptedPeer::good() +
               "!9,40,STEP,3\n!10,50,INP,1,1,3\n!11,60,SEQ,0\n!12,70,STEP,0\n!13,80,STEP,1\n";
    });
    EXPECT_EQ(message(link->runSequence({{{}, 1s}})), "");
    ASSERT_TRUE(receiver->waitFor("step 1", 2));
    EXPECT_THAT(receiver->getLines(), ElementsAre("step 0 0", "step 1 10", "step 2 20", "input 1 closed 40",
                                                  "finished incomplete 50", "step 0 0", "step 1 10"));
}

TEST_F(StreamLinkEventsTest, StepsThatWaitForABusyReceiverAreForgotten)
{
    const auto gate = busyAt("step 0 0");
    start();
    peer.send("!6,10,STEP,0\n!7,20,STEP,1\n!8,30,INP,1,1,1\n");
    gate->isBusy.get_future().wait();
    EXPECT_EQ(message(link->runSequence({{{}, 1s}})), "");
    gate->mayGoOn.set_value();
    peer.send("!9,40,SEQ,0\n!10,50,STEP,0\n");
    receiver->waitFor("step 0", 2);
    EXPECT_THAT(receiver->getLines(),
                ElementsAre("step 0 0", "input 1 closed 20", "finished incomplete 30", "step 0 0"));
}

} // namespace
} // namespace KesTest
