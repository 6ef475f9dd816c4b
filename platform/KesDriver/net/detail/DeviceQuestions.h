#pragma once

#include <KesDriver/IKestoNetwork.h>

#include <giomm.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <list>
#include <optional>
#include <string>

namespace KesDriver {

/// Asks devices one line each and takes one line for an answer, a few devices at a time. Belongs to one
/// thread, whose default main context it works in.
class DeviceQuestions {
public:
    static constexpr std::size_t atATime = 8;
    static constexpr std::chrono::milliseconds timeout{1000};
    /// In bytes; a longer one is none.
    static constexpr std::size_t longestAnswer = 4096;

    /// The line without its end; nothing from a device that cannot be reached or does not answer in time.
    using Answered = std::function<void(const std::optional<std::string>&)>;

    /// `question` with its line end.
    DeviceQuestions(std::string question, std::uint16_t port);
    /// Ends what is under way; nobody hears of it.
    ~DeviceQuestions();
    DeviceQuestions(const DeviceQuestions&) = delete;
    DeviceQuestions& operator=(const DeviceQuestions&) = delete;

    void ask(const NetAddress& address, Answered answered);
    /// Not all have answered yet.
    bool isAsking() const { return !_running.empty() || !_waiting.empty(); }

private:
    struct Waiting {
        NetAddress address;
        Answered answered;
    };
    class Dialogue;

    void _startNext();
    void _onEnded(std::list<Dialogue>::iterator ended);

    const std::string _question;
    const std::uint16_t _port;
    std::deque<Waiting> _waiting;
    std::list<Dialogue> _running;
};

} // namespace KesDriver
