// A device that has stopped reading, behind a stream that holds less than what is to be sent.

#include "../RecordingReceiver.h"
#include "ScriptedPeer.h"

#include <KesDriver/ConnectionError.h>
#include <KesDriver/net/StreamLink.h>

#include <gtest/gtest.h>

#include <sys/socket.h>

#include <chrono>
#include <future>

using namespace KesDriver;
using namespace KesTest;
using namespace std::chrono_literals;

namespace {

using Clock = std::chrono::steady_clock;

class FullBufferTest : public testing::Test {
protected:
    FullBufferTest() { link.setReceiver(receiver); }
    ~FullBufferTest() override { goOn(); }

    StreamPointer connect()
    {
        auto stream = peer.getConnector()(nullptr);
        constexpr int size = 4096;
        g_socket_set_option(g_socket_connection_get_socket(G_SOCKET_CONNECTION(stream.get())), SOL_SOCKET,
                            SO_SNDBUF, size, nullptr);
        return stream;
    }
    /// From its next question on, until `goOn`.
    void stopReading()
    {
        peer.setScript([this](const std::string&) -> std::optional<std::string> {
            reading.wait();
            return std::nullopt;
        });
        // What the watch asks.
        std::this_thread::sleep_for(250ms);
    }
    void goOn()
    {
        if (!std::exchange(isReading, true))
            promise.set_value();
    }
    auto send()
    {
        return std::async(std::launch::async, [this] {
            const auto result = link.runSequence(OutputSequence(1000, {{}, 1s}));
            EXPECT_TRUE(isConnectionError(result)) << message(result);
        });
    }

    std::promise<void> promise;
    std::shared_future<void> reading = promise.get_future();
    bool isReading = false;
    ScriptedPeer peer;
    std::shared_ptr<RecordingReceiver> receiver = std::make_shared<RecordingReceiver>();
    StreamLink link{StreamLink::Settings{[this](GCancellable*) { return connect(); }, "127.8.0.1",
                                         "Test@here", [] { return 800ms; }}};
    ConnectionNumber connection = 0;
};

TEST_F(FullBufferTest, IsALossWithinTheTimeoutAlsoForAStop)
{
    ASSERT_EQ(message(link.connect(connection)), "");
    stopReading();
    const auto before = Clock::now();
    auto sending = send();
    std::this_thread::sleep_for(50ms);
    EXPECT_TRUE(isConnectionError(link.stopOutputs())) << "it cannot get past what is being sent";
    sending.wait();
    EXPECT_LT(Clock::now() - before, 1200ms);
    EXPECT_TRUE(receiver->waitFor("lost"));
    peer.setScript(nullptr);
    goOn();
    ASSERT_EQ(message(link.connect(connection)), "");
    EXPECT_EQ(message(link.runSequence({{{}, 1s}})), "");
    EXPECT_EQ(receiver->getLines(), std::vector<std::string>{"lost"});
}

TEST_F(FullBufferTest, DisconnectWaitsForNothing)
{
    ASSERT_EQ(message(link.connect(connection)), "");
    stopReading();
    auto sending = send();
    std::this_thread::sleep_for(50ms);
    const auto before = Clock::now();
    link.disconnect();
    sending.wait();
    EXPECT_LT(Clock::now() - before, 300ms);
    EXPECT_TRUE(receiver->getLines().empty());
}

} // namespace
