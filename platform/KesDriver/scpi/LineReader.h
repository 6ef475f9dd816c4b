#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace KesDriver::Scpi {

/// Puts bytes together to messages: lines that end with "\n" or "\r\n", in which a block may hold line
/// ends, a text in quotes not. What is in a message is up to `UnitReader`. Holds at most one message and
/// what was received behind it. Not synchronised.
class KES_EXPORT LineReader {
public:
    /// How much is accepted.
    struct Limits {
        /// Bytes of a line, without blocks and its end.
        std::size_t line = 65536;
        /// Bytes of all blocks of a message together.
        std::size_t blocks = std::size_t{8} << 20U;
    };

    LineReader() : LineReader(Limits{}) {}
    explicit LineReader(const Limits& limits) : _limits(limits) {}

    /// What has been received; to be followed by `next` until there is nothing more.
    void add(std::string_view bytes);
    /// The next message, without its line end; none when it is not complete yet, and after an overrun.
    std::optional<std::string> next();
    /// The line or its blocks were too long: where the next message begins is not known any more. It stays
    /// so; the connection has to end.
    bool isOverrun() const { return _overrun; }

private:
    void _scan();
    void _scanCharacter(char c);
    bool _scanBlock();
    std::string _take(std::size_t end);

    const Limits _limits;
    std::string _bytes;
    /// Up to here the bytes of the present message have been looked at.
    std::size_t _position = 0;
    /// Behind the last block.
    std::size_t _blockEnd = 0;
    std::size_t _blockBytes = 0;
    char _quote = 0;
    bool _complete = false;
    bool _waiting = false;
    bool _overrun = false;
};

} // namespace KesDriver::Scpi
