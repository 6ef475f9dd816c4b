#include "../serving/TestClient.h"
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

template <typename Object>
using Pointer = std::unique_ptr<Object, decltype(&g_object_unref)>;

constexpr NetAddress busyAddress{NetAddress::Bytes{127, 8, 0, 3}};
constexpr NetAddress emptyAddress{NetAddress::Bytes{127, 8, 0, 4}};

/// Listens, but takes no connection: who tries to connect waits as for a device that is switched off.
class BusyPort {
public:
    BusyPort() : _listener(make())
    {
        const auto any = toAddress(0);
        g_socket_bind(_listener.get(), any.get(), FALSE, nullptr);
        g_socket_set_listen_backlog(_listener.get(), 0);
        g_socket_listen(_listener.get(), nullptr);
        const Pointer<GSocketAddress> address(g_socket_get_local_address(_listener.get(), nullptr),
                                              &g_object_unref);
        _port = g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address.get()));
        for (int i = 0; i < 8; ++i) {
            _waiting.push_back(make());
            g_socket_set_blocking(_waiting.back().get(), FALSE);
            g_socket_connect(_waiting.back().get(), toAddress(_port).get(), nullptr, nullptr);
        }
    }
    std::uint16_t getPort() const { return _port; }

private:
    static Pointer<GSocket> make()
    {
        return {g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, nullptr),
                &g_object_unref};
    }
    static Pointer<GSocketAddress> toAddress(std::uint16_t port)
    {
        return {g_inet_socket_address_new_from_string(busyAddress.to_string().c_str(), port),
                &g_object_unref};
    }

    Pointer<GSocket> _listener;
    std::uint16_t _port = 0;
    std::vector<Pointer<GSocket>> _waiting;
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
    EXPECT_LT(Clock::now() - before, 2s);
}

TEST(TcpNetwork, AnAnswerMayTakeLongerThanAnAttempt)
{
    DeviceServer server(std::make_shared<SimulatedKesto>(KestoIdentifer(3, 17)));
    ASSERT_TRUE(server.listen(emptyAddress.to_string(), 0));
    const auto link = TcpNetwork(server.getPort()).createLink(emptyAddress);
    ConnectionNumber connection = 0;
    ASSERT_EQ(message(link->connect(connection)), "");
    KesTest::TestClient(server.connect()).tell("SIM:DEL 1.5");
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
