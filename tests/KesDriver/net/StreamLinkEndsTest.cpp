// What a link does when its device is slow, gone or let go of, and what its threads do to each other.

#include "StreamLinkTest.h"

#include <sys/socket.h>

using testing::ElementsAre;

namespace KesTest {
namespace {

using StreamLinkEndsTest = StreamLinkTest;

TEST_F(StreamLinkEndsTest, DeviceHearsOfItsControllerAllTheTime)
{
    makeLink(60s);
    start();
    auto before = Clock::now();
    ASSERT_TRUE(isAsked(":SYST:BOOT?", 2));
    EXPECT_LT(Clock::now() - before, 900ms) << "its watchdog has a second";
    makeLink(400ms);
    start();
    answer(":SYST:BOOT?", "");
    before = Clock::now();
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_LT(Clock::now() - before, soon);
    EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
}

TEST_F(StreamLinkEndsTest, DisconnectEndsWhatIsUnderWay)
{
    makeLink(60s);
    for (const bool isConnected : {true, false}) {
        answer(isConnected ? ":OUTP" : ":SYST:PROT", "");
        if (isConnected)
            start();
        std::vector<std::future<std::string>> calls(isConnected ? 4 : 1);
        for (auto& call : calls)
            call = std::async(std::launch::async, [&] {
                ConnectionNumber number = 0;
                return message(isConnected ? link->startWorkingMode() : link->connect(number));
            });
        ASSERT_TRUE(isAsked(isConnected ? ":OUTP" : ":SYST:PROT", isConnected ? 1 : 2));
        const auto before = Clock::now();
        link->disconnect();
        for (auto& call : calls)
            EXPECT_EQ(call.get(), said(" is not connected."));
        EXPECT_LT(Clock::now() - before, soon);
        EXPECT_TRUE(waitUntil([this] { return peer.hasEnded(); }));
    }
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

// A device that is switched off and on again between two connections of a link, or behind one that stays

class RestartTest : public StreamLinkTest {
protected:
    void restart()
    {
        peer.setScript([](const std::string& commands) -> std::optional<std::string> {
            if (commands.starts_with(":SYST:WATC 1"))
                return ScriptedPeer::good("8;0");
            if (commands.starts_with(":SYST:BOOT?;:EVEN:DATA? "))
                return ScriptedPeer::good("8;\"1,10,INP,1,1\",\"2,20,INP,1,0\"");
            return commands == ":SYST:BOOT?" ? std::optional(ScriptedPeer::good("8")) : std::nullopt;
        });
    }
};

TEST_F(RestartTest, BetweenTwoConnectionsEventsBeginAnew)
{
    start();
    peer.send("!6,2000,INP,1,0\n");
    EXPECT_TRUE(receiver->waitFor("input 1 open 2000"));
    restart();
    link->disconnect();
    start();
    peer.send("!1,10,INP,2,1\n");
    EXPECT_TRUE(receiver->waitFor("input 2 closed 10"));
    EXPECT_THAT(receiver->getLines(), ElementsAre("input 1 open 2000", "input 2 closed 10"));
}

TEST_F(RestartTest, BehindAConnectionIsALossOfItAndFillsNoGap)
{
    for (const char* events : {"", "!7,2000,INP,1,0\n"}) {
        peer.setScript(nullptr);
        receiver->clear();
        start();
        restart();
        peer.send(events);
        EXPECT_TRUE(receiver->waitFor("lost")) << "it is asked again and again";
        EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
        EXPECT_EQ(message(link->stopOutputs()), said(" is not connected."));
        start();
        EXPECT_EQ(message(link->stopOutputs()), "");
        link->disconnect();
    }
}

// A device that has stopped reading, behind a stream that holds less than what is to be sent

class FullBufferTest : public StreamLinkTest {
protected:
    ~FullBufferTest() override { goOn(); }

    void stopReading(std::chrono::milliseconds timeout)
    {
        makeLink(timeout, [this](GCancellable*) {
            auto stream = peer.getConnector()(nullptr);
            socket = g_socket_connection_get_socket(G_SOCKET_CONNECTION(stream.get()));
            g_socket_set_option(socket, SOL_SOCKET, SO_SNDBUF, 4096, nullptr);
            return stream;
        });
        start();
        peer.setScript(
            [reading = promise.get_future().share()](const std::string&) -> std::optional<std::string> {
                reading.wait();
                return std::nullopt;
            });
        ASSERT_TRUE(isAsked(":SYST:BOOT?"));
    }
    std::future<bool> send()
    {
        auto sending = std::async(std::launch::async, [this] {
            return isConnectionError(link->runSequence(OutputSequence(1000, {{}, 1s})));
        });
        std::this_thread::sleep_for(50ms);
        return sending;
    }
    void goOn()
    {
        peer.setScript(nullptr);
        if (!std::exchange(isReading, true))
            promise.set_value();
    }

    std::promise<void> promise;
    bool isReading = false;
    GSocket* socket = nullptr;
};

TEST_F(FullBufferTest, IsALossWithinTheTimeoutAlsoForAStop)
{
    const auto before = Clock::now();
    stopReading(400ms);
    auto sending = send();
    EXPECT_TRUE(isConnectionError(link->stopOutputs())) << "it cannot get past what is being sent";
    EXPECT_TRUE(sending.get());
    EXPECT_LT(Clock::now() - before, soon);
    EXPECT_TRUE(receiver->waitFor("lost"));
    goOn();
    start();
    EXPECT_EQ(message(link->runSequence({{{}, 1s}})), "");
    EXPECT_EQ(receiver->getLines(), std::vector<std::string>{"lost"});
}

TEST_F(FullBufferTest, IsALossThoughOnlyTheWatchWouldSend)
{
    stopReading(400ms);
    const std::string bytes(4096, ' ');
    while (g_socket_send_with_blocking(socket, bytes.data(), bytes.size(), FALSE, nullptr, nullptr) > 0) {
    }
    EXPECT_TRUE(receiver->waitFor("lost"));
}

TEST_F(FullBufferTest, DisconnectWaitsForNothing)
{
    stopReading(60s);
    auto sending = send();
    const auto before = Clock::now();
    link->disconnect();
    EXPECT_TRUE(sending.get());
    EXPECT_LT(Clock::now() - before, soon);
    EXPECT_TRUE(receiver->getLines().empty());
}

} // namespace
} // namespace KesTest
