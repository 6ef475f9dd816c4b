#include "DeviceTest.h"

#include <KesDriver/ConnectionError.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <future>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace {

using Clock = std::chrono::steady_clock;

/// How a link reaches a simulated device: in its own process, or over TCP without lockstep.
enum class Way { Embedded, Tcp };

constexpr NetAddress servedAddress{NetAddress::Bytes{127, 8, 0, 1}};

class LinkContract : public DeviceTest, public testing::WithParamInterface<Way> {
protected:
    LinkContract()
    {
        if (GetParam() == Way::Embedded) {
            network->add(servedAddress, device);
        } else {
            server = std::make_unique<DeviceServer>(device);
            EXPECT_EQ(message(server->listen(servedAddress.to_string(), 0)), "");
        }
        link = makeLink();
        link->setReceiver(receiver);
    }

    std::unique_ptr<IKestoLink> makeLink()
    {
        return server ? TcpNetwork(server->getPort()).createLink(servedAddress)
                      : network->createLink(servedAddress);
    }
    static std::string said(const std::string& text)
    {
        return "KESTO-3 No. 00017 (" + servedAddress.to_string() + ')' + text;
    }

    std::unique_ptr<DeviceServer> server;
};

TEST_P(LinkContract, TellsWhatTheDeviceIs)
{
    start();
    EXPECT_EQ(connection, 1U);
    EXPECT_TRUE(link->isSimulated());
    KestoIdentity identity;
    EXPECT_EQ(message(link->identify(identity)), "");
    EXPECT_EQ(identity, device->getIdentity());
    OutputLimits limits;
    limits.maximumAmperes = 0.0;
    EXPECT_EQ(message(link->readLimits(limits)), "");
    EXPECT_EQ(limits, OutputLimits{});
    DeviceTime time{0};
    EXPECT_EQ(message(link->readTime(time)), "");
    std::this_thread::sleep_for(2ms);
    ClockReading reading;
    EXPECT_EQ(message(link->readClock(reading)), "");
    EXPECT_GE(reading.device, time + 2ms);
}

TEST_P(LinkContract, ConnectsOneLinkAtATime)
{
    const auto early = link->stopOutputs();
    EXPECT_TRUE(isConnectionError(early));
    EXPECT_EQ(message(early), "KESTO " + servedAddress.to_string() + " is not connected.");
    start();
    const auto again = link->connect(connection);
    EXPECT_EQ(message(again), said(" is connected already."));
    EXPECT_FALSE(isConnectionError(again));
    const auto other = makeLink();
    ConnectionNumber number = 7;
    const auto refused = other->connect(number);
    EXPECT_TRUE(isConnectionError(refused));
    EXPECT_EQ(number, 0U);
    EXPECT_THAT(message(refused), testing::MatchesRegex(".* is in use by .+@.+ \\(.+\\)\\."));
    EXPECT_EQ(message(link->stopOutputs()), "");
    link->disconnect();
    const auto ended = link->stopOutputs();
    EXPECT_TRUE(isConnectionError(ended));
    EXPECT_EQ(message(ended), said(" is not connected."));
    EXPECT_EQ(message(other->connect(number)), "");
    EXPECT_EQ(number, 2U);
    other->disconnect();
    EXPECT_EQ(message(link->connect(connection)), "");
    EXPECT_EQ(connection, 2U);
    EXPECT_TRUE(receiver->getLines().empty());
}

TEST_P(LinkContract, PutsOutSteadyValuesWithinTheLimits)
{
    ASSERT_TRUE(link->connect(connection));
    EXPECT_EQ(message(link->setOutputs(amperes(1.0))), said(": The outputs are not switched on."));
    EXPECT_EQ(message(link->runSequence({{amperes(1.0), 1s}})), said(": The outputs are not switched on."));
    EXPECT_EQ(message(link->startWorkingMode()), "");
    auto outputs = amperes(1.0 / 3.0);
    outputs.voltages[2] = {57.7, -120.0};
    outputs.currentHertz = 49.9;
    outputs.binaryOutputs = 5;
    EXPECT_EQ(message(link->setOutputs(outputs)), "");
    EXPECT_EQ(device->getOutputs(), outputs);
    EXPECT_EQ(message(link->setOutputs(amperes(33.0))), said(": IA: 33 A is above the limit of 32 A."));
    EXPECT_EQ(device->getOutputs(), outputs);
    EXPECT_EQ(message(link->stopOutputs()), "");
    EXPECT_EQ(device->getOutputs(), OutputState{});
    EXPECT_TRUE(device->isWorking());
    EXPECT_EQ(message(link->stopWorkingMode()), "");
    EXPECT_EQ(message(link->stopWorkingMode()), "");
    EXPECT_FALSE(device->isWorking());

    KestoState state;
    EXPECT_EQ(message(link->setAuxDC(true, 11.0)),
              said(": Auxiliary supply: 11 V is below the limit of 12 V."));
    EXPECT_EQ(message(link->setAuxDC(true, 110.5)), "");
    EXPECT_EQ(message(link->readState(state)), "");
    EXPECT_TRUE(state.isReady && state.isAuxDCEnabled);
    EXPECT_EQ(state.auxDCVolts, 110.5);
    EXPECT_EQ(state.error, "");
    EXPECT_EQ(message(link->setAuxDC(false, 110.5)), "");
    EXPECT_EQ(message(link->readState(state)), "");
    EXPECT_FALSE(state.isAuxDCEnabled);
}

TEST_P(LinkContract, RunsASequenceAndTellsItsEvents)
{
    device->setSpeed(10.0);
    start();
    device->setInput(2, true);
    ASSERT_TRUE(receiver->waitFor("input 2 closed"));
    receiver->clear();
    OutputSequence sequence = {{amperes(1.0), 100ms}, {amperes(2.0), 1h}, {amperes(0.5), 20ms}};
    sequence[0].ramp.currents[0].magnitude = 1.0;
    sequence[1].endOn = EndCondition({{2, true}, {3, false}}, EndCondition::Join::All, 5ms);
    EXPECT_EQ(message(link->runSequence(sequence)), "");
    ASSERT_TRUE(receiver->waitFor("finished"));
    EXPECT_THAT(receiver->getLines(),
                ElementsAre("step 0 0", "step 1 100000", "step 2 105000", "finished complete 125000"));
    EXPECT_EQ(device->getOutputs(), OutputState{});

    EXPECT_EQ(message(link->runSequence({})), said(": The sequence has no steps."));
    EXPECT_EQ(message(link->runSequence({{amperes(1.0), 1h}})), "");
    EXPECT_EQ(message(link->runSequence(sequence)), said(": A sequence is running."));
    EXPECT_EQ(message(link->setOutputs({})), said(": A sequence is running."));
    receiver->clear();
    device->setInput(2, false);
    ASSERT_TRUE(receiver->waitFor("input 2 open"));
    EXPECT_TRUE(receiver->getLines().back().ends_with("in 0"));
    EXPECT_EQ(message(link->stopOutputs()), "");
    EXPECT_TRUE(receiver->waitFor("finished incomplete"));
}

TEST_P(LinkContract, ArmsAndStarts)
{
    start();
    const OutputSequence sequence = {{amperes(1.0), 5ms}};
    EXPECT_EQ(message(link->startArmed({})), said(": There is no sequence that waits for its start."));
    ASSERT_TRUE(link->setOutputs(amperes(1.0)));
    EXPECT_EQ(message(link->armSequence(sequence)), "");
    for (const auto& result :
         {link->setOutputs(amperes(1.0)), link->runSequence(sequence), link->armSequence(sequence)})
        EXPECT_EQ(message(result), said(": A sequence waits for its start."));
    EXPECT_FALSE(device->connectTestObject(nullptr));
    ClockReading reading;
    ASSERT_TRUE(link->readClock(reading));
    EXPECT_EQ(message(link->startArmed({reading.common - 1us, {}})),
              said(": The moment of the start has passed."));
    EXPECT_EQ(message(link->startArmed({{}, 9})), said(": Binary input 9 does not exist: the device has 8."));
    EXPECT_EQ(device->getOutputs(), OutputState{});
    EXPECT_TRUE(receiver->getLines().empty());
    EXPECT_EQ(message(link->startArmed({})), "");
    ASSERT_TRUE(receiver->waitFor("finished complete"));
}

TEST_P(LinkContract, StopsFromInsideAReport)
{
    // In the process not even a device at full speed goes on before the receiver has returned.
    if (GetParam() == Way::Embedded)
        device->setSpeed(1e6);
    std::promise<std::string> stopped;
    receiver->onLine([&](const std::string& line) {
        if (!line.starts_with("step 1"))
            return;
        std::this_thread::sleep_for(20ms);
        stopped.set_value(message(link->stopOutputs()));
    });
    start();
    ASSERT_TRUE(link->runSequence({{amperes(1.0), 1ms}, {amperes(2.0), 1h}, {amperes(3.0), 1h}}));
    EXPECT_EQ(stopped.get_future().get(), "");
    EXPECT_EQ(device->getOutputs(), OutputState{});
    ASSERT_TRUE(receiver->waitFor("finished incomplete"));
    EXPECT_EQ(receiver->getLines().size(), 3U);
}

TEST_P(LinkContract, TellsFaultsAgainAndAgainAndRefusesMeanwhile)
{
    device->setFaultRepeatInterval(5ms);
    start();
    auto outputs = amperes(2.0);
    outputs.binaryOutputs = 0b1010;
    const std::tuple<std::function<void()>, std::string, std::string> cases[] = {
        {[this] { device->simulateOverload(1); }, "fault IBl", "IB - overload"},
        {[this] { device->simulateOverheat(4); }, "fault UBh", "UB - overheat"},
        {[this] { device->simulateChannelLost(2); }, "fault ICd", "IC - channel is disconnected"},
        {[this] { device->simulateQuickShutdown(); }, "fault button", "the emergency button was pressed"}};
    for (const auto& [fail, report, text] : cases) {
        receiver->clear();
        ASSERT_EQ(message(link->startWorkingMode()), "");
        ASSERT_EQ(message(link->runSequence({{outputs, 1h}})), "");
        EXPECT_EQ(device->getOutputs(), outputs);
        fail();
        ASSERT_TRUE(receiver->waitFor(report, 3));
        EXPECT_EQ(device->getOutputs(), OutputState{});
        const auto lines = receiver->getLines();
        EXPECT_THAT(std::vector(lines.begin(), lines.begin() + 3),
                    ElementsAre("step 0 0", report, testing::StartsWith("finished incomplete")));
        EXPECT_EQ(message(link->setOutputs(amperes(1.0))), said(": Fault: " + text));
        KestoState state;
        EXPECT_EQ(message(link->readState(state)), "");
        EXPECT_FALSE(state.isReady);
        EXPECT_EQ(state.error, text);
        EXPECT_TRUE(link->stopWorkingMode());
        EXPECT_FALSE(link->startWorkingMode());
        device->clearFaults();
    }
    device->simulateOverload(6); // there is none
    EXPECT_TRUE(link->startWorkingMode());
}

TEST_P(LinkContract, LossIsToldOnceAndSwitchesOff)
{
    start();
    ASSERT_TRUE(link->setAuxDC(true, 220.0));
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h}}));
    ASSERT_TRUE(receiver->waitFor("step 0"));
    device->simulateConnectionLoss();
    EXPECT_EQ(device->getOutputs(), OutputState{});
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_EQ(receiver->getLastConnection(), 1U);
    const auto result = link->stopOutputs();
    EXPECT_EQ(message(result), said(" is not connected."));
    EXPECT_TRUE(isConnectionError(result));
    EXPECT_EQ(message(link->connect(connection)), "");
    EXPECT_EQ(connection, 2U);
    KestoState state;
    ASSERT_TRUE(link->readState(state));
    EXPECT_FALSE(state.isAuxDCEnabled);
    const auto lines = receiver->getLines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "lost"), 1);
}

TEST_P(LinkContract, SilenceIsALossWithinThreeSeconds)
{
    device->setTimeout(300ms); // of embedded links only
    start();
    ASSERT_TRUE(link->setOutputs(amperes(2.0)));
    device->setSilent(true);
    const auto before = Clock::now();
    ASSERT_TRUE(receiver->waitFor("lost"));
    EXPECT_TRUE(isSoonOff());
    EXPECT_LT(Clock::now() - before, 3s);
    EXPECT_THAT(receiver->getLines(), ElementsAre("lost"));
}

TEST_P(LinkContract, DeviceMayGoFirst)
{
    start();
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h}}));
    server.reset();
    network->remove(servedAddress);
    removeDevice();
    EXPECT_TRUE(receiver->waitFor("lost"));
    EXPECT_TRUE(isConnectionError(link->stopOutputs()));
    EXPECT_THAT(message(link->connect(connection)),
                testing::EndsWith(" cannot be reached: there is no device at this address."));
}

TEST_P(LinkContract, LinkAndEmbeddedDeviceMayGoInsideAReport)
{
    std::promise<void> isGone;
    std::promise<void> mayGo;
    receiver->onLine([&](const std::string& line) {
        if (!line.starts_with("step 0"))
            return;
        mayGo.get_future().wait();
        link.reset();
        if (!server) {
            network->remove(servedAddress);
            removeDevice();
        }
        isGone.set_value();
    });
    start();
    ASSERT_TRUE(link->runSequence({{amperes(2.0), 1h}}));
    mayGo.set_value();
    isGone.get_future().wait();
    EXPECT_TRUE(!device || isSoonOff());
}

INSTANTIATE_TEST_SUITE_P(Ways, LinkContract, testing::Values(Way::Embedded, Way::Tcp),
                         [](const auto& way) { return way.param == Way::Embedded ? "Embedded" : "Tcp"; });

} // namespace
