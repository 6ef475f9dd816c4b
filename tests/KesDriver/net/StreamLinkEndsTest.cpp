// What a link does when its device is slow, gone or let go of, and what its threads do to each other.

#include "StreamLinkTest.h"

#include <algorithm>
#include <atomic>
#include <future>

using testing::ElementsAre;

namespace KesTest {
namespace {

using StreamLinkEndsTest = StreamLinkTest;

TEST_F(StreamLinkEndsTest, DeviceHearsOfItsControllerAllTheTime)
{
    link = makeLink(60s, peer.getConnector());
    start();
    std::this_thread::sleep_for(1s);
    EXPECT_GE(std::ranges::count(peer.getQuestions(), ":SYST:BOOT?"), 4);
    link = makeLink(400ms, peer.getConnector());
    link->setReceiver(receiver);
    start();
    answer(":SYST:BOOT?", "");
    const auto before = Clock::now();
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_LT(Clock::now() - before, soon);
    EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
}

TEST_F(StreamLinkEndsTest, DeviceThatDoesNotReadIsNoticed)
{
    start();
    std::promise<void> goOn;
    answer(":OUTP", [&] {
        goOn.get_future().wait();
        return ScriptedPeer::good();
    });
    const auto caller = std::async(std::launch::async, [this] { (void)link->startWorkingMode(); });
    ASSERT_TRUE(isAsked(":OUTP"));
    // More than the stream can hold.
    const auto before = Clock::now();
    EXPECT_TRUE(isConnectionError(link->runSequence(OutputSequence(10000, {{}, 1s}))));
    EXPECT_LT(Clock::now() - before, soon);
    goOn.set_value();
    caller.wait();
    EXPECT_TRUE(receiver->waitFor("lost"));
}

TEST_F(StreamLinkEndsTest, DisconnectEndsWhatIsUnderWay)
{
    link = makeLink(60s, peer.getConnector());
    start();
    answer(":OUTP", "");
    std::vector<std::future<std::string>> calls(4);
    for (auto& call : calls)
        call = std::async(std::launch::async, [this] { return connectionError(link->startWorkingMode()); });
    ASSERT_TRUE(isAsked(":OUTP"));
    const auto before = Clock::now();
    link->disconnect();
    for (auto& call : calls)
        EXPECT_EQ(call.get(), said(" is not connected."));
    EXPECT_LT(Clock::now() - before, soon);
    while (!peer.hasEnded() && Clock::now() - before < 10s)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(peer.hasEnded());
    EXPECT_TRUE(receiver->getLines().empty());
}

TEST_F(StreamLinkEndsTest, NothingIsReportedAfterTheEndNorDoesItWaitForABusyReceiver)
{
    for (const bool isDestroyed : {false, true}) {
        receiver->clear();
        const auto gate = busyAt("input 1 closed 10");
        start();
        peer.send("!6,10,INP,1,1\n!7,20,INP,1,0\n!8,30,INP,1,1\n");
        gate->isBusy.get_future().wait();
        const auto before = Clock::now();
        link->disconnect();
        if (isDestroyed)
            link.reset();
        EXPECT_LT(Clock::now() - before, soon);
        gate->mayGoOn.set_value();
        std::vector<std::string> lines = {"input 1 closed 10"};
        if (!isDestroyed) {
            start();
            peer.send("!6,10,INP,2,1\n");
            EXPECT_TRUE(receiver->waitFor("input 2"));
            lines.push_back("input 2 closed 10");
            link->disconnect();
        }
        EXPECT_EQ(receiver->getLines(), lines);
    }
}

TEST_F(StreamLinkEndsTest, ASequenceIsSentAndStartedBeforeTheNext)
{
    start();
    answer(":SEQ:CLE", [] {
        std::this_thread::sleep_for(20ms);
        return ScriptedPeer::good();
    });
    const auto run = [this] { return message(link->runSequence({{{}, 1s}})); };
    auto first = std::async(std::launch::async, run);
    auto second = std::async(std::launch::async, run);
    EXPECT_EQ(first.get() + second.get(), "");
    std::string order;
    for (const auto& question : peer.getQuestions())
        order += question.starts_with(":SEQ:CLE") ? "steps " : question == ":INIT" ? "start " : "";
    EXPECT_EQ(order, "steps start steps start ");
}

TEST_F(StreamLinkEndsTest, CallsOverlapAndConnectionsFollowEachOther)
{
    // However slow this computer is.
    link = makeLink(10s, peer.getConnector());
    link->setReceiver(receiver);
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
        const auto before = Clock::now();
        while (answered < enough && Clock::now() - before < 10s)
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
} // namespace KesTest
