#pragma once

#include "../RecordingReceiver.h"
#include "ScriptedPeer.h"
#include "support/WaitUntil.h"

#include <KesDriver/ConnectionError.h>
#include <KesDriver/net/StreamLink.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <utility>

namespace KesTest {

using namespace KesDriver;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// How long a link takes at most to notice what goes wrong at once.
inline constexpr auto soon = 1500ms;

inline std::string connectionError(const Kes::Result& result)
{
    return result || isConnectionError(result) ? message(result) : "no connection error: " + message(result);
}

/// A link whose answers have a time-out of 400 ms, and the device at its other end.
class StreamLinkTest : public testing::Test {
protected:
    StreamLinkTest() { makeLink(400ms); }
    ~StreamLinkTest() override { link.reset(); }

    void makeLink(std::chrono::milliseconds timeout) { makeLink(timeout, peer.getConnector()); }
    void makeLink(std::chrono::milliseconds timeout, StreamConnector connector)
    {
        link = std::make_unique<StreamLink>(StreamLink::Settings{std::move(connector), "127.8.0.1",
                                                                 "Test@here", [timeout] { return timeout; }});
        link->setReceiver(receiver);
    }
    void start() { ASSERT_EQ(message(link->connect(connection)), ""); }
    /// From now on a question that begins so gets this reply; every other one the usual answer.
    void answer(const std::string& question, std::function<std::string()> reply)
    {
        peer.setScript([=](const std::string& commands) {
            return commands.starts_with(question) ? std::optional(reply()) : std::nullopt;
        });
    }
    void answer(const std::string& question, const std::string& reply)
    {
        answer(question, [=] { return reply; });
    }
    /// Of the questions so far, those that begin so.
    std::vector<std::string> getQuestions(const std::string& beginning) const
    {
        auto questions = peer.getQuestions();
        std::erase_if(questions, [&](const auto& each) { return !each.starts_with(beginning); });
        return questions;
    }
    /// Waits for so many of them.
    bool isAsked(const std::string& beginning, std::size_t times = 1) const
    {
        return waitUntil([&] { return getQuestions(beginning).size() >= times; });
    }
    /// Keeps the receiver busy with the first such line, when all that was sent with it has come. The test
    /// may end before the receiver does.
    struct Gate {
        std::promise<void> isBusy;
        std::promise<void> mayGoOn;
        bool hasBeenBusy = false;
    };
    std::shared_ptr<Gate> busyAt(const std::string& wanted)
    {
        const auto gate = std::make_shared<Gate>();
        receiver->onLine([this, gate, wanted](const std::string& line) {
            if (line != wanted || std::exchange(gate->hasBeenBusy, true))
                return;
            EXPECT_EQ(message(link->stopOutputs()), "");
            gate->isBusy.set_value();
            gate->mayGoOn.get_future().wait_for(5s);
        });
        return gate;
    }
    static std::string said(const std::string& text) { return "KESTO-3 No. 00017 (127.8.0.1)" + text; }

    ScriptedPeer peer;
    std::shared_ptr<RecordingReceiver> receiver = std::make_shared<RecordingReceiver>();
    std::unique_ptr<StreamLink> link;
    ConnectionNumber connection = 0;
};

} // namespace KesTest
