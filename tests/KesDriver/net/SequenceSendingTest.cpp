// A long sequence on its way to a device, and a stop meanwhile.

#include "../serving/TestClient.h"
#include "StreamLinkTest.h"

#include <KesDriver/net/ValueText.h>
#include <KesDriver/scpi/Block.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <atomic>

namespace KesTest {
namespace {

class SequenceSendingTest : public StreamLinkTest {
protected:
    SequenceSendingTest()
    {
        makeLink(10s);
        start();
        OutputStep step{{}, 1h};
        step.ramp.voltages[2].degrees = 100.0 / 7.0;
        step.endOn = InputCondition{1, true};
        sequence.assign(10000, step);
    }
    /// Asks for a stop from another thread when such a question has come, before it is answered.
    void stopAt(const std::string& question)
    {
        peer.setScript([=, this](const std::string& commands) -> std::optional<std::string> {
            if (!commands.starts_with(question) || isStopping.exchange(true))
                return std::nullopt;
            isBegun = false;
            stopping = std::thread([this] {
                isBegun = true;
                EXPECT_EQ(message(link->stopOutputs()), "");
            });
            EXPECT_TRUE(waitUntil([this] { return isBegun.load(); }));
            std::this_thread::sleep_for(50ms);
            return std::nullopt;
        });
    }
    /// The latest question besides those of the watch.
    std::string getLast() const
    {
        auto questions = peer.getQuestions();
        std::erase(questions, ":SYST:BOOT?");
        return questions.back();
    }
    OutputSequence sequence;
    std::atomic<bool> isStopping{false};
    std::atomic<bool> isBegun{false};
    std::thread stopping;
};

TEST_F(SequenceSendingTest, PartsAreSmallAndBehindEachOther)
{
    EXPECT_EQ(message(link->runSequence(sequence)), "");
    const auto parts = getQuestions(":SEQ:");
    ASSERT_GT(parts.size(), 10U);
    std::string lines;
    for (const auto& part : parts) {
        EXPECT_LT(part.size(), 70000U);
        lines += part.substr(part.find('#') + 7);
        EXPECT_TRUE(part.starts_with(&part == &parts.front() ? ":SEQ:CLE;:SEQ:DATA #" : ":SEQ:DATA:APP #"));
        EXPECT_EQ(part.substr(part.find('#') + 7, 4), "STEP");
    }
    auto whole = ValueText::write(sequence);
    std::erase(whole, '\n'); // The peer puts lines together without.
    EXPECT_TRUE(lines == whole);
    EXPECT_EQ(getLast(), ":INIT");
}

TEST_F(SequenceSendingTest, StopMeanwhileComesSoonAndKeepsItFromStarting)
{
    for (const char* moment : {":SEQ:CLE;:SEQ:DATA #", ":SEQ:DATA:APP #"}) {
        isStopping = false;
        stopAt(moment);
        EXPECT_EQ(message(link->runSequence(sequence)), said(" was stopped before the sequence began."));
        stopping.join();
        EXPECT_EQ(getLast(), ":ABOR");
    }
    EXPECT_LE(getQuestions(":SEQ:DATA:APP").size(), 2U);
    EXPECT_TRUE(getQuestions(":INIT").empty());
    // The next one has nothing to do with it.
    sequence.resize(1);
    EXPECT_EQ(message(link->runSequence(sequence)), "");
    EXPECT_EQ(getLast(), ":INIT");
}

TEST_F(SequenceSendingTest, StopBehindTheStartIsAStopOfASequenceThatRan)
{
    sequence.resize(1);
    stopAt(":INIT");
    EXPECT_EQ(message(link->runSequence(sequence)), "");
    stopping.join();
    EXPECT_EQ(getLast(), ":ABOR");
}

TEST_F(SequenceSendingTest, NothingStartsBehindAStopThatComesWhileEventsAreStillHeard)
{
    const auto gate = busyAt("input 1 closed 10");
    peer.send("!6,10,INP,1,1\n");
    gate->isBusy.get_future().wait();
    sequence.resize(1);
    auto running = std::async(std::launch::async, [this] { (void)link->runSequence(sequence); });
    ASSERT_TRUE(isAsked(":SEQ:CLE"));
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(message(link->stopOutputs()), "");
    gate->mayGoOn.set_value();
    running.wait();
    EXPECT_EQ(getLast(), ":ABOR");
}

/// The device's side.
TEST(SequenceBlocksTest, AreAppendedUpToTheLimitAndLeaveTheStepsWhenWrong)
{
    DeviceServer server(std::make_shared<SimulatedKesto>(KestoIdentifer(3, 17)));
    TestClient client(server.connect());
    const auto add = [&](const std::string& lines) {
        return client.ask("SEQ:DATA:APP " + Scpi::writeBlock(lines) + ";:SYST:ERR?;:SEQ:COUN?");
    };
    const std::string step = "STEP 1,0,0,0,0,0,0,0,0,0,0,0,0,50,50,0\n";
    std::string many;
    for (int i = 0; i < 5000; ++i)
        many += step;
    EXPECT_EQ(add(step + step), "0,\"No error\";2");
    EXPECT_EQ(add("ANGLE 90\n" + step), "-161,\"Invalid block data;line 1\";2");
    EXPECT_EQ(add(many), "0,\"No error\";5002");
    EXPECT_THAT(add(many), testing::StartsWith("-223,"));
    EXPECT_EQ(client.ask("SEQ:COUN?"), "5002");
    EXPECT_EQ(client.ask("SEQ:DATA " + Scpi::writeBlock(step) + ";COUN?"), "1");
}

} // namespace
} // namespace KesTest
