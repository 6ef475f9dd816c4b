#include "../serving/TestClient.h"
#include "LineServer.h"
#include "support/Message.h"

#include <KesDriver/EmbeddedNetwork.h>
#include <KesDriver/ProgramNetwork.h>
#include <KesDriver/net/TcpNetwork.h>
#include <KesDriver/simulated/SimulatedNetwork.h>
#include <KesDriver/simulated/serving/DeviceServer.h>

#include <gmock/gmock.h>

#include <future>

using namespace KesDriver;
using namespace std::chrono_literals;
using KesTest::message;

namespace {

using Clock = std::chrono::steady_clock;

constexpr NetAddress busyAddress{NetAddress::Bytes{127, 8, 0, 3}};
constexpr NetAddress emptyAddress{NetAddress::Bytes{127, 8, 0, 4}};

/// Listens, but takes no connection: who tries to connect waits as for a device that is switched off.
class BusyPort {
public:
    BusyPort()
    {
        _listener->set_listen_backlog(0);
        _listener->listen();
        for (int i = 0; i < 8; ++i) {
            _waiting.push_back(KesTest::bindSocket(busyAddress, 0));
            _waiting.back()->set_blocking(false);
            EXPECT_THROW(_waiting.back()->connect(_listener->get_local_address()), Glib::Error) << "not yet";
        }
    }
    std::uint16_t getPort() const { return KesTest::portOf(_listener); }

private:
    const Glib::RefPtr<Gio::Socket> _listener = KesTest::bindSocket(busyAddress, 0);
    std::vector<Glib::RefPtr<Gio::Socket>> _waiting;
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

    const BusyPort port;
    const auto link = TcpNetwork(port.getPort()).createLink(busyAddress);
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
    const BusyPort port;
    const auto link = TcpNetwork(port.getPort()).createLink(busyAddress);
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
