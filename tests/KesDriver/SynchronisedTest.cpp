#include "DeviceTest.h"

#include <KesDriver/EmbeddedNetwork.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <support/ThreadCount.h>

#include <optional>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

constexpr NetAddress makeAddress(std::uint8_t last)
{
    return NetAddress(NetAddress::Bytes{10, 0, 0, last});
}

const OutputSequence sequence = {{amperes(1.0), 1h}};

/// What is found until the search is asked to stop.
std::vector<FoundDevice> find(IKestoNetwork& network, std::size_t most = 10)
{
    std::vector<FoundDevice> found;
    std::stop_source stop;
    EXPECT_TRUE(network.find(
        [&](const FoundDevice& device) {
            found.push_back(device);
            if (found.size() == most)
                stop.request_stop();
        },
        stop.get_token()));
    return found;
}

TEST(SimulatedNetwork, DevicesComeAndGo)
{
    SimulatedNetwork network;
    const auto device = std::make_shared<SimulatedKesto>(KestoIdentifer(3, 17));
    const auto link = network.createLink(makeAddress(2));
    ConnectionNumber connection = 0;
    EXPECT_EQ(message(link->connect(connection)),
              "KESTO 10.0.0.2 cannot be reached: there is no device at this address.");
    EXPECT_TRUE(network.add(makeAddress(2), device));
    EXPECT_FALSE(network.add(makeAddress(2), std::make_shared<SimulatedKesto>(KestoIdentifer(3, 18))));
    EXPECT_TRUE(network.add(makeAddress(1), std::make_shared<SimulatedKesto>(KestoIdentifer(3, 18))));
    EXPECT_EQ(network.get(makeAddress(2)), device);
    const FoundDevice first{makeAddress(1), {3, 18}, true, ""};
    EXPECT_THAT(find(network), ElementsAre(first, FoundDevice{makeAddress(2), {3, 17}, true, ""}));
    device->setSilent(true);
    EXPECT_THAT(find(network), ElementsAre(first));
    device->setSilent(false);
    EXPECT_TRUE(link->connect(connection));
    EXPECT_THAT(find(network),
                ElementsAre(first, FoundDevice{makeAddress(2), {3, 17}, true, "this program"}));
    EXPECT_THAT(find(network, 1), ElementsAre(first)) << "asked to stop";
    network.remove(makeAddress(2));
    EXPECT_FALSE(network.get(makeAddress(2)));
    EXPECT_TRUE(link->stopOutputs());

    EXPECT_EQ(getEmbeddedNetwork(), SimulatedNetwork::getEmbedded());
    EXPECT_EQ(SimulatedNetwork::getEmbedded()->get(embeddedAddress)->getIdentifer(), KestoIdentifer(3, 1));
}

TEST(SimulatedNetwork, DeviceHasOneControllerWhereverItIsServed)
{
    SimulatedNetwork network;
    const auto device = std::make_shared<SimulatedKesto>(KestoIdentifer(3, 17));
    network.add(makeAddress(1), device);
    DeviceServer server(device);
    ASSERT_TRUE(server.listen("127.8.0.1", 0));
    const auto own = network.createLink(makeAddress(1));
    const auto other = TcpNetwork(server.getPort()).createLink(NetAddress(NetAddress::Bytes{127, 8, 0, 1}));
    ConnectionNumber connection = 0;
    ASSERT_TRUE(own->connect(connection));
    EXPECT_THAT(message(other->connect(connection)), testing::HasSubstr(" is in use by "));
    own->disconnect();
    ASSERT_EQ(message(other->connect(connection)), "");
    EXPECT_THAT(find(network)[0].owner, testing::HasSubstr("@"));
    EXPECT_THAT(message(own->connect(connection)), testing::HasSubstr(" (127.0.0.1:"));
}

TEST_F(DeviceTest, IsServedOnlyToWhoConnectsAndLeavesNoThread)
{
    const auto before = countThreads();
    for (int round = 0; round < 3; ++round) {
        link = network->createLink(address);
        EXPECT_EQ(countThreads(), before);
        start();
        EXPECT_GT(countThreads(), before);
        if (round == 1)
            device->simulateConnectionLoss();
        link.reset();
        EXPECT_TRUE(waitUntil([&] { return countThreads() == before; }))
            << countThreads() - before << " more";
    }
    removeDevice();
    EXPECT_LT(countThreads(), before);
}

class ArmedTest : public DeviceTest {
protected:
    ArmedTest() { start(); }
};

TEST_F(ArmedTest, BeginsAtItsMomentOnTheCommonClock)
{
    const std::tuple<double, double, std::optional<double>, DeviceTime> cases[] = {
        {1, 1, {}, 0us}, {1000, 1000, {}, 0us}, {1, 100, {}, 0us}, {1, 1, 90.0, 5ms}};
    for (const auto& [speed, laterSpeed, degrees, wait] : cases) {
        receiver->clear();
        device->setSpeed(speed);
        auto onWave = sequence;
        onWave[0].faultDegrees = degrees;
        ASSERT_TRUE(link->armSequence(onWave));
        ClockReading clock;
        ASSERT_TRUE(link->readClock(clock));
        const auto moment = clock.common + 100ms;
        ASSERT_TRUE(link->startArmed({.at = moment}));
        device->setSpeed(laterSpeed);
        ASSERT_TRUE(receiver->waitFor("step 0"));
        ASSERT_TRUE(link->readClock(clock));
        const auto since = static_cast<double>((clock.device - receiver->getStart()).count()) / laterSpeed;
        EXPECT_EQ(static_cast<double>(clock.common.count()) - since,
                  static_cast<double>((moment + wait).count()));
        ASSERT_TRUE(link->stopOutputs());
        ASSERT_TRUE(receiver->waitFor("finished"));
    }
}

TEST_F(ArmedTest, EndsWithoutHavingBegun)
{
    const std::pair<std::function<void()>, const char*> ends[] = {
        {[this] { EXPECT_TRUE(link->stopOutputs()); }, "finished incomplete"},
        {[this] { EXPECT_TRUE(link->stopWorkingMode()); }, "finished incomplete"},
        {[this] { device->simulateQuickShutdown(); }, "finished incomplete"},
        {[this] { device->simulateConnectionLoss(); }, "lost"},
    };
    for (const auto& [end, line] : ends) {
        link->disconnect();
        device->clearFaults();
        start();
        ASSERT_TRUE(link->armSequence(sequence));
        ASSERT_TRUE(link->startArmed({.input = 2}));
        receiver->clear();
        end();
        EXPECT_TRUE(receiver->waitFor(line));
        device->setInput(2, true);
        device->setInput(2, false);
        EXPECT_THAT(receiver->getLines(), testing::Not(testing::Contains(StartsWith("step"))));
        EXPECT_EQ(device->getEnergisings(), 0U);
    }
}

TEST_F(ArmedTest, BeginsWhenTheInputCloses)
{
    device->setInput(2, true);
    ASSERT_TRUE(link->armSequence({{amperes(1.0), 10ms}}));
    ASSERT_TRUE(link->startArmed({.input = 2}));
    for (const auto& [input, isClosed] : {std::pair{3U, true}, {2U, false}})
        device->setInput(input, isClosed);
    EXPECT_EQ(device->getOutputs(), OutputState{});
    device->setInput(2, true);
    ASSERT_TRUE(receiver->waitFor("finished complete 10000"));
    const auto lines = receiver->getLines();
    EXPECT_THAT(lines, ElementsAre(StartsWith("input 2 closed"), StartsWith("input 3 closed"),
                                   StartsWith("input 2 open"), StartsWith("input 2 closed"), "step 0 0",
                                   "finished complete 10000"));
}

} // namespace
