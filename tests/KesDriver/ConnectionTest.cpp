#include "DeviceTest.h"

#include <KesDriver/ConnectionError.h>

#include <future>
#include <thread>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

using RealClock = std::chrono::steady_clock;

class ConnectionTest : public DeviceTest {};

/// The text of a failure that means that there is no connection.
std::string connectionError(const Kes::Result& result)
{
    return isConnectionError(result) ? message(result) : "no connection error: " + message(result);
}

TEST_F(ConnectionTest, ConnectsOneLinkAtATime)
{
    KestoIdentity identity;
    EXPECT_EQ(connectionError(link->identify(identity)), "KESTO 10.0.0.1 is not connected.");
    EXPECT_TRUE(link->connect(connection));
    EXPECT_EQ(connection, 1U);
    EXPECT_TRUE(link->identify(identity));
    EXPECT_EQ(identity, device->getIdentity());
    EXPECT_FALSE(identity.firmwareVersion.empty() || identity.calibrationDate.empty());
    const auto again = link->connect(connection);
    EXPECT_EQ(message(again), "KESTO-3 No. 00017 (10.0.0.1) is connected already.");
    EXPECT_FALSE(isConnectionError(again));

    const auto other = network->createLink(address);
    ConnectionNumber number = 0;
    EXPECT_THAT(connectionError(other->connect(number)),
                testing::MatchesRegex("KESTO-3 No. 00017 .* is in use by .+@.+ \\(local\\)\\."));
    link->disconnect();
    EXPECT_TRUE(other->connect(number));
    EXPECT_EQ(connectionError(link->stopOutputs()), "KESTO-3 No. 00017 (10.0.0.1) is not connected.");
}

TEST_F(ConnectionTest, DeviceThatDoesNotAnswerIsLostWithinTheTimeout)
{
    device->setTimeout(300ms);
    start();
    ASSERT_TRUE(link->setOutputs(amperes(2.0)));
    device->setSilent(true);
    EXPECT_EQ(connectionError(link->stopOutputs()), "KESTO-3 No. 00017 (10.0.0.1) does not answer.");
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_TRUE(isSoonOff());
    EXPECT_EQ(connectionError(link->connect(connection)), "KESTO-3 No. 00017 (10.0.0.1) does not answer.");
    device->setSilent(false);

    // Without any call the link finds out by itself.
    const std::pair<std::function<void()>, std::function<void()>> ways[] = {
        {[this] { device->setSilent(true); }, [this] { device->setSilent(false); }},
        {[this] { device->setAnswerDelay(300ms); }, [this] { device->setAnswerDelay(0ms); }}};
    for (const auto& [begin, end] : ways) {
        start();
        ASSERT_TRUE(link->setOutputs(amperes(2.0)));
        receiver->clear();
        begin();
        ASSERT_TRUE(receiver->waitFor("lost"));
        EXPECT_EQ(receiver->getLastConnection(), connection);
        EXPECT_TRUE(isSoonOff());
        EXPECT_EQ(connectionError(link->stopOutputs()), "KESTO-3 No. 00017 (10.0.0.1) is not connected.");
        end();
        EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
    }
}

TEST_F(ConnectionTest, OutputsGoOffThoughTheReceiverIsBusy)
{
    std::promise<void> isOff;
    const auto scope = onLine([&](const std::string& line) {
        if (line.starts_with("step"))
            isOff.get_future().wait();
    });
    device->setTimeout(200ms);
    start();
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h}}));
    device->setSilent(true);
    EXPECT_TRUE(isSoonOff());
    isOff.set_value();
    EXPECT_TRUE(receiver->waitFor("lost"));
}

TEST_F(ConnectionTest, SlowDeviceObeysAtOnceAndAnswersLate)
{
    start();
    ASSERT_TRUE(link->setOutputs(amperes(2.0)));
    device->setAnswerDelay(50ms);
    const auto before = RealClock::now();
    std::thread stopper([&] { EXPECT_TRUE(link->stopOutputs()); });
    while (device->getOutputs() != OutputState{} && RealClock::now() - before < 10s)
        std::this_thread::yield();
    EXPECT_EQ(device->getOutputs(), OutputState{});
    stopper.join();
    EXPECT_GE(RealClock::now() - before, 50ms);

    link->disconnect();
    device->setAnswerDelay(0ms);
    start();
    device->setTimeout(100ms);
    device->setAnswerDelay(1min);
    EXPECT_TRUE(isConnectionError(link->stopOutputs()));
    ASSERT_TRUE(receiver->waitFor("lost"));
}

TEST_F(ConnectionTest, DisconnectEndsWhatIsUnderWay)
{
    // A call to a silent one, a call whose answer is late, an attempt to connect; each would last a minute.
    device->setTimeout(60s);
    const std::pair<std::function<void()>, bool> cases[] = {
        {[this] { device->setSilent(true); }, true},
        {[this] { device->setAnswerDelay(59s); }, true},
        {[this] { device->setAnswerDelay(59s); }, false},
    };
    for (const auto& [slow, isUp] : cases) {
        const bool isConnected = isUp;
        if (isConnected)
            start();
        slow();
        const auto before = RealClock::now();
        std::promise<std::string> failed;
        std::thread caller([&] {
            ConnectionNumber number = 0;
            failed.set_value(connectionError(isConnected ? link->startWorkingMode() : link->connect(number)));
        });
        auto failure = failed.get_future();
        while (failure.wait_for(1ms) != std::future_status::ready && RealClock::now() - before < 30s)
            link->disconnect();
        EXPECT_EQ(failure.get(), "KESTO-3 No. 00017 (10.0.0.1) is not connected.");
        caller.join();
        device->setSilent(false);
        device->setAnswerDelay(0ms);
    }
    EXPECT_TRUE(receiver->getLines().empty());
    EXPECT_TRUE(link->connect(connection));
}

TEST_F(ConnectionTest, QueuedReportsEndWithTheConnection)
{
    int left = 3;
    std::promise<void> hasEnded;
    const auto scope = onLine([&](const std::string&) {
        if (--left != 0)
            return;
        link->disconnect();
        hasEnded.set_value();
    });
    start();
    // Whether it has been answered by then is a matter of the threads.
    static_cast<void>(link->runSequence(OutputSequence(9, {amperes(12.0), 1h, InputCondition{1, false}})));
    hasEnded.get_future().wait();
    start();
    ASSERT_TRUE(link->runSequence({{amperes(1.0), 1ms}}));
    ASSERT_TRUE(receiver->waitFor("finished complete"));
    EXPECT_THAT(receiver->getLines(), ElementsAre("step 0 0", "step 1 0", "step 2 0", "step 0 0",
                                                  testing::StartsWith("finished complete")));
    EXPECT_EQ(receiver->getLastConnection(), 2U);
}

TEST_F(ConnectionTest, DroppedConnectionSwitchesOffAndReconnects)
{
    start();
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h}}));
    ASSERT_TRUE(link->setAuxDC(true, 220));
    device->simulateConnectionLoss();
    EXPECT_EQ(device->getOutputs(), OutputState{});
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_EQ(receiver->getLines().back(), "lost");
    start();
    EXPECT_EQ(connection, 2U);
    EXPECT_TRUE(link->setOutputs(amperes(1.0)));
    KestoState state;
    ASSERT_TRUE(link->readState(state));
    EXPECT_FALSE(state.isAuxDCEnabled);
}

TEST_F(ConnectionTest, DeviceMayGoFirst)
{
    start();
    ASSERT_TRUE(link->runSequence({{amperes(12.0), 1h}}));
    removeDevice();
    EXPECT_TRUE(receiver->waitFor("lost"));
    EXPECT_TRUE(isConnectionError(link->stopOutputs()));
    EXPECT_EQ(connectionError(link->connect(connection)),
              "KESTO-3 No. 00017 (10.0.0.1) cannot be reached: there is no device at this address.");
}

TEST_F(ConnectionTest, LinkAndDeviceMayGoInsideAReport)
{
    const auto isIdle = std::make_shared<std::promise<void>>();
    const auto isDestroyed = std::make_shared<std::promise<void>>();
    const auto scope = onLine([this, isIdle, isDestroyed](const std::string& line) {
        if (!line.starts_with("step"))
            return;
        isIdle->get_future().wait();
        link.reset();
        removeDevice();
        isDestroyed->set_value();
    });
    start();
    ASSERT_TRUE(link->runSequence({{amperes(12.0), 1h}}));
    isIdle->set_value();
    isDestroyed->get_future().wait();
    link = network->createLink(address);
    EXPECT_EQ(message(link->connect(connection)),
              "KESTO 10.0.0.1 cannot be reached: there is no device at this address.");
}

TEST_F(ConnectionTest, ReceiverMayGoAtAnyTime)
{
    device->setSpeed(1e6);
    start();
    for (int round = 0; round < 200; ++round) {
        auto own = std::make_shared<RecordingReceiver>();
        link->setReceiver(own);
        ASSERT_TRUE(link->setOutputs(amperes(round % 2 == 0 ? 20.0 : 0.0)));
        own.reset();
    }
}

} // namespace
