#pragma once

#include <KesDriver/net/StreamConnector.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace KesTest {

/// The other end of a link's stream, over a pair of sockets within the process: a device that answers as it
/// should until a script says otherwise. One connection at a time; the latest one counts.
class ScriptedPeer {
public:
    /// What is sent for a question, as bytes: "<n>" is its number, "<n-1>" and "<n+1>" are those beside it.
    /// Nothing: the usual answer. On the peer's thread.
    using Script = std::function<std::optional<std::string>(const std::string& commands)>;

    ~ScriptedPeer();

    KesDriver::StreamConnector getConnector();

    void setScript(Script script);
    /// At any time, besides the answers.
    void send(const std::string& bytes);
    void close();

    /// What has been asked so far, without what stands around the commands.
    std::vector<std::string> getQuestions() const;
    /// Whether the link has ended the stream.
    bool hasEnded() const;

    /// Replies of a script. The last one ends the stream.
    static std::string good(const std::string& fields = {});
    static std::string refusal(const std::string& error) { return error + ";<n>\n"; }
    static constexpr const char* hangUp = "<end>";

private:
    KesDriver::StreamPointer _accept();
    void _end();
    void _serve();
    void _hear(const std::string& line);

    std::mutex _sending;
    mutable std::mutex _mutex;
    Script _script;
    KesDriver::StreamPointer _stream;
    std::thread _thread;
    std::string _question;
    std::vector<std::string> _questions;
    bool _hasEnded = false;
};

} // namespace KesTest
