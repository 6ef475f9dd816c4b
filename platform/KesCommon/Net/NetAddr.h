#pragma once

#include <array>
#include <charconv>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Kes::Net {

/// A network address of N bytes, written as decimal numbers with a separator; `NetAddr<4, '.'>` is IPv4. A
/// value of N bytes without a port or a mask; it has an order and can be the key of a map. Any thread.
///
/// It is not for IPv6, whose text has hexadecimal groups and leaves zeros out, and it looks up no host
/// names.
template <std::size_t N, char Separator>
class NetAddr {
public:
    /// In the order in which they are written.
    using Bytes = std::array<std::uint8_t, N>;

    /// All bytes zero.
    constexpr NetAddr() = default;
    /// Any bytes make an address: broadcast addresses and the like are not told apart.
    constexpr explicit NetAddr(const Bytes& bytes) : _bytes(bytes) {}

    /// Reads exactly N numbers from 0 to 255 in plain decimal digits: no blanks, signs, leading zeros.
    /// Anything else, also behind the last number, gives nothing. Reads what `to_string` writes.
    static std::optional<NetAddr> parse(const std::string& text)
    {
        NetAddr result;
        std::string_view rest = text;
        for (std::size_t i = 0; i < N; ++i) {
            if (i > 0) {
                if (rest.empty() || rest.front() != Separator)
                    return std::nullopt;
                rest.remove_prefix(1);
            }
            const char* begin = rest.data();
            const auto [end, error] = std::from_chars(begin, begin + rest.size(), result._bytes[i]);
            const auto length = static_cast<std::size_t>(end - begin);
            if (error != std::errc() || (length > 1 && rest.front() == '0'))
                return std::nullopt;
            rest.remove_prefix(length);
        }
        return rest.empty() ? std::optional(result) : std::nullopt;
    }

    /// The numbers without leading zeros, such as "192.168.1.2". Another separator is for places where the
    /// usual one has a meaning of its own, such as "192-168-1-2" in the name of a host; `parse` does not
    /// read that.
    std::string to_string(char separator = Separator) const
    {
        std::string text;
        for (const auto byte : _bytes) {
            if (!text.empty())
                text += separator;
            text += std::to_string(byte);
        }
        return text;
    }

    /// All N bytes, the first one written first.
    constexpr const Bytes& getBytes() const { return _bytes; }

    /// Byte by byte, as numbers, from the first one: 9.0.0.0 is less than 10.0.0.0, other than in the order
    /// of the texts.
    friend constexpr auto operator<=>(const NetAddr&, const NetAddr&) = default;

private:
    /// In the order in which they are written, whatever the byte order of the machine.
    Bytes _bytes{};
};

} // namespace Kes::Net
