#include "DeviceTest.h"

#include <KesDriver/EmbeddedNetwork.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/SimulatedNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <support/ThreadCount.h>

#include <limits>

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

/// A device of a network, connected and in working mode.
struct Member {
    Member(SimulatedNetwork& network, std::uint8_t number, double speed)
        : device(std::make_shared<SimulatedKesto>(KestoIdentifer(3, number * 1000U + 1U)))
    {
        device->setSpeed(speed);
        network.add(makeAddress(number), device);
        link = network.createLink(makeAddress(number));
        link->setReceiver(receiver);
        ConnectionNumber connection = 0;
        EXPECT_TRUE(link->connect(connection));
        EXPECT_TRUE(link->startWorkingMode());
    }
    /// Step 0 in microseconds on the common clock.
    double getCommonStart(double speed) const
    {
        ClockReading clock;
        EXPECT_TRUE(link->readClock(clock));
        return static_cast<double>(clock.common.count()) +
               static_cast<double>((receiver->getStart() - clock.device).count()) / speed;
    }

    std::shared_ptr<SimulatedKesto> device;
    std::shared_ptr<RecordingReceiver> receiver = std::make_shared<RecordingReceiver>();
    std::unique_ptr<IKestoLink> link;
};

using Members = std::vector<std::unique_ptr<Member>>;

Members makeMembers(SimulatedNetwork& network, double speed)
{
    Members members;
    for (std::uint8_t number = 1; number <= 4; ++number)
        members.push_back(std::make_unique<Member>(network, number, speed));
    return members;
}

/// The largest difference of the starts, in microseconds of device time.
double getSkew(const Members& members, double speed)
{
    double first = std::numeric_limits<double>::max(), last = -first;
    for (const auto& member : members) {
        EXPECT_TRUE(member->receiver->waitFor("step 0"));
        first = std::min(first, member->getCommonStart(speed));
        last = std::max(last, member->getCommonStart(speed));
    }
    return (last - first) * speed;
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
        EXPECT_TRUE(soon([&] { return countThreads() == before; })) << countThreads() - before << " more";
    }
    removeDevice();
    EXPECT_LT(countThreads(), before);
}

TEST(SynchronisedStart, AtACommonMoment)
{
    struct Case {
        double speed, laterSpeed;
        std::optional<double> degrees;
        DeviceTime wait;
    };
    const Case cases[] = {{1, 1, {}, 0us}, {1000, 1000, {}, 0us}, {1, 100, {}, 0us}, {1, 1, 90.0, 5ms}};
    for (const auto& [speed, laterSpeed, degrees, wait] : cases) {
        SimulatedNetwork network;
        const auto members = makeMembers(network, speed);
        OutputSequence onWave = sequence;
        onWave[0].faultDegrees = degrees;
        ClockReading clock;
        for (const auto& member : members)
            ASSERT_TRUE(member->link->armSequence(onWave));
        ASSERT_TRUE(members[0]->link->readClock(clock));
        const auto moment = clock.common + 150ms;
        for (const auto& member : members)
            ASSERT_TRUE(member->link->startArmed({.at = moment}));
        for (const auto& member : members)
            member->device->setSpeed(laterSpeed);
        EXPECT_EQ(getSkew(members, laterSpeed), 0.0);
        EXPECT_EQ(members[0]->getCommonStart(laterSpeed), static_cast<double>((moment + wait).count()));
    }
}

TEST(SynchronisedStart, ByABoundContact)
{
    for (const double speed : {1.0, 1000.0}) {
        SimulatedNetwork network;
        const auto members = makeMembers(network, speed);
        for (int press = 1; press <= 2; ++press) {
            for (const auto& member : members) {
                member->receiver->clear();
                ASSERT_TRUE(member->link->armSequence(sequence));
                ASSERT_TRUE(member->link->startArmed({.input = 3}));
            }
            network.closeStartContact(3);
            const double skew = getSkew(members, speed);
            EXPECT_LE(skew, 100.0);
            EXPECT_GT(skew, 0.0);
            for (const auto& member : members) {
                EXPECT_THAT(member->receiver->getLines()[0], StartsWith("input 3 closed"));
                EXPECT_EQ(member->receiver->getLines()[1], "step 0 0");
                ASSERT_TRUE(member->receiver->waitFor("input 3 open"));
                ASSERT_TRUE(member->link->stopOutputs());
                ASSERT_TRUE(member->receiver->waitFor("finished"));
            }
        }
    }
}

TEST(SynchronisedStart, ByABinaryOutput)
{
    for (const double speed : {1.0, 1000.0}) {
        SimulatedNetwork network;
        const auto members = makeMembers(network, speed);
        EXPECT_FALSE(network.wireStartLine(makeAddress(9)));
        ASSERT_TRUE(network.wireStartLine(makeAddress(4)));
        ASSERT_TRUE(network.wireStartLine(makeAddress(1)));
        for (const auto& member : members)
            ASSERT_TRUE(member->link->armSequence(sequence));
        for (std::size_t i = 1; i < members.size(); ++i)
            ASSERT_TRUE(members[i]->link->startArmed({.input = 8}));
        auto first = sequence;
        first[0].outputs.binaryOutputs = 1;
        ASSERT_TRUE(members[0]->link->stopOutputs());
        ASSERT_TRUE(members[0]->link->runSequence(first));
        EXPECT_LE(getSkew(members, speed), 200.0);
        ASSERT_TRUE(members[0]->link->stopOutputs());
        for (std::size_t i = 1; i < members.size(); ++i)
            EXPECT_TRUE(members[i]->receiver->waitFor("input 8 open"));
        EXPECT_THAT(members[0]->receiver->getLines(), testing::Not(testing::Contains(StartsWith("input"))));
    }
}

class ArmedTest : public DeviceTest {
protected:
    ArmedTest() { start(); }
};

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
