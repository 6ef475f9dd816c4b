#pragma once

#include <array>
#include <cstddef>
#include <deque>
#include <memory>
#include <streambuf>
#include <string_view>

namespace KesProgram {

/// An output buffer in memory that grows by pieces: no byte is moved while it grows, and moving the content
/// on gives its memory back piece by piece. Internal to archives. One thread at a time.
class ChunkedBuffer : public std::streambuf {
public:
    /// `text` is at most as long as a piece.
    bool startsWith(std::string_view text) const;

    /// Writes all bytes but the first `skip` (which lie in the first piece) to `out` and empties the buffer.
    /// True when `out` is without an error afterwards.
    bool moveTo(std::ostream& out, std::size_t skip);

protected:
    int_type overflow(int_type character) override;

private:
    using Chunk = std::array<char, 32768>;

    std::size_t _filled(std::size_t index) const;

    std::deque<std::unique_ptr<Chunk>> _chunks;
};

} // namespace KesProgram
