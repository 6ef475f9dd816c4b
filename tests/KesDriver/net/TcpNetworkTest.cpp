#include "../serving/TestClient.h"
#include "support/FaultyWire.h"
#include "support/Message.h"

#include <KesDriver/EmbeddedNetwork.h>
#include <KesDriver/ProgramNetwork.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/SimulatedNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <gmock/gmock.h>

#include <future>
#include <unistd.h>

using namespace KesDriver;
using namespace std::chrono_literals;
using KesTest::message;

namespace {

using Clock = std::chrono::steady_clock;

constexpr NetAddress busyAddress{NetAddress::Bytes{127, 8, 0, 3}};
constexpr NetAddress emptyAddress{NetAddress::Bytes{127, 8, 0, 4}};

/// Listens, but takes no connection: who tries to connect waits as for a device that is switched off.
struct BusyPort {
    BusyPort() { wire.ignore(); }

    const std::uint16_t port = static_cast<std::uint16_t>(10000 + getpid() % 20000);
    KesTest::FaultyWire wire{busyAddress.to_string(), emptyAddress.to_string(), port};
};

TEST(TcpNetwork, GivesUpWhereNobodyAnswers)
{
    const std::string text = " cannot be reached: there is no device at this address.";
    ConnectionNumber connection = 1;
    const auto nothing = TcpNetwork(1).createLink(emptyAddress);
    auto before = Clock::now();
    EXPECT_EQ(message(nothing->connect(connection)), "KESTO 127.8.0.4" + text);
    EXPECT_EQ(connection, 0U);
    EXPECT_LT(Clock::now() - before, 900ms) << "the address refuses at once";

    const BusyPort busy;
    const auto link = TcpNetwork(busy.port).createLink(busyAddress);
    before = Clock::now();
    EXPECT_EQ(message(link->connect(connection)), "KESTO 127.8.0.3" + text);
    EXPECT_GE(Clock::now() - before, 900ms);
    EXPECT_LT(Clock::now() - before, 2500ms);
}

TEST(TcpNetwork, AnAnswerMayTakeLongerThanAnAttempt)
{
    DeviceServer server(std::make_shared<SimulatedKesto>(KestoIdentifer(3, 17)));
    ASSERT_TRUE(server.listen(emptyAddress.to_string(), 0));
    const auto link = TcpNetwork(server.getPort()).createLink(emptyAddress);
    ConnectionNumber connection = 0;
    ASSERT_EQ(message(link->connect(connection)), "");
    KesTest::TestClient(server.connect()).tell("SIM:DEL 1.1");
    EXPECT_EQ(message(link->stopOutputs()), "");
}

TEST(TcpNetwork, AttemptEndsWhenTheProgramCloses)
{
    const BusyPort busy;
    const auto link = TcpNetwork(busy.port).createLink(busyAddress);
    ConnectionNumber connection = 0;
    auto attempt = std::async(std::launch::async, [&] { return message(link->connect(connection)); });
    EXPECT_EQ(attempt.wait_for(100ms), std::future_status::timeout);
    link->disconnect();
    EXPECT_EQ(attempt.get(), "KESTO 127.8.0.3 is not connected.") << "it has ended by itself";
}

TEST(ProgramNetwork, HasTheEmbeddedDevicesAndAllOthers)
{
    const auto network = getProgramNetwork();
    std::vector<NetAddress> found;
    std::stop_source enough;
    (void)network->find(
        [&](const FoundDevice& device) {
            found.push_back(device.address);
            enough.request_stop();
        },
        enough.get_token());
    EXPECT_THAT(found, testing::Contains(embeddedAddress));
    EXPECT_TRUE(network->createLink(embeddedAddress)->isSimulated());
    const auto other = network->createLink(emptyAddress);
    EXPECT_FALSE(other->isSimulated());
    ConnectionNumber connection = 0;
    EXPECT_EQ(message(other->connect(connection)),
              "KESTO 127.8.0.4 cannot be reached: there is no device at this address.");
}

} // namespace
