#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace KesDriver {

/// Makes lines of the bytes of a stream, for a peer that may send anything: after the first line that is
/// too long or no text it gives no more. Not synchronised. For messages with blocks there is
/// `Scpi::LineReader`.
class KES_EXPORT LineBuffer {
public:
    /// A line without its end may have so many bytes.
    explicit LineBuffer(std::size_t longestLine) : _longestLine(longestLine) {}

    /// Lines are measured when they are taken, so take all whole lines after each call: else the bytes
    /// grow.
    void append(std::string_view bytes);

    /// Takes the next line, without its "\n" or "\r\n"; false when there is no whole one, and from the first
    /// line on that is too long or no text.
    bool take(std::string& line);

    /// Whether a line was too long, or was no text: not UTF-8, or with control characters other than tabs.
    bool isBroken() const { return _isBroken; }

private:
    std::size_t _longestLine;
    std::string _bytes;
    /// What has been taken, and what holds no line end.
    std::size_t _begin = 0;
    std::size_t _searched = 0;
    bool _isBroken = false;
};

} // namespace KesDriver
