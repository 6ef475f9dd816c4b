// A device that is switched off and on again between two connections of a link, or behind one that stays.

#include "../RecordingReceiver.h"
#include "ScriptedPeer.h"

#include <KesDriver/net/StreamLink.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

class RestartTest : public testing::Test {
protected:
    RestartTest()
    {
        link.setReceiver(receiver);
        peer.setScript([this](const std::string& commands) {
            auto answer = tell(commands);
            return answer ? std::optional(ScriptedPeer::good(*answer)) : std::nullopt;
        });
        EXPECT_EQ(message(link.connect(connection)), "");
    }
    std::optional<std::string> tell(const std::string& commands) const
    {
        const auto boot = isRestarted ? "8" : "7";
        if (commands == ":SYST:BOOT?")
            return boot;
        if (commands == ":SYST:WATC 1;:SYST:BOOT?;:EVEN:LAST?")
            return isRestarted ? "8;0" : "7;5";
        if (commands.starts_with(":SYST:BOOT?;:EVEN:DATA? "))
            return isRestarted ? "8;\"1,10,INP,1,1\",\"2,20,INP,1,0\"" : "7;\"6,1000,INP,1,1\"";
        return std::nullopt;
    }

    std::atomic<bool> isRestarted{false};
    ScriptedPeer peer;
    std::shared_ptr<RecordingReceiver> receiver = std::make_shared<RecordingReceiver>();
    StreamLink link{StreamLink::Settings{peer.getConnector(), "127.8.0.1", "Test@here"}};
    ConnectionNumber connection = 0;
};

TEST_F(RestartTest, BetweenTwoConnectionsEventsBeginAnew)
{
    peer.send("!7,2000,INP,1,0\n");
    EXPECT_TRUE(receiver->waitFor("input 1 open 2000"));
    isRestarted = true;
    link.disconnect();
    ASSERT_EQ(message(link.connect(connection)), "");
    peer.send("!1,10,INP,2,1\n");
    EXPECT_TRUE(receiver->waitFor("input 2 closed 10"));
    EXPECT_THAT(receiver->getLines(),
                ElementsAre("input 1 closed 1000", "input 1 open 2000", "input 2 closed 10"));
}

TEST_F(RestartTest, BehindAConnectionIsALossOfIt)
{
    isRestarted = true;
    EXPECT_TRUE(receiver->waitFor("lost")) << "it is asked again and again";
    EXPECT_EQ(message(link.stopOutputs()), "KESTO-3 No. 00017 (127.8.0.1) is not connected.");
    EXPECT_EQ(link.connect(connection), Kes::Result(true));
    EXPECT_EQ(message(link.stopOutputs()), "");
}

TEST_F(RestartTest, EventsOfAnotherStartDoNotFillAGap)
{
    isRestarted = true;
    peer.send("!7,2000,INP,1,0\n");
    EXPECT_TRUE(receiver->waitFor("lost"));
    EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
}

} // namespace
