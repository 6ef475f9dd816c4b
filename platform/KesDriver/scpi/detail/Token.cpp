#include <KesDriver/scpi/detail/Token.h>

#include <KesDriver/scpi/Block.h>

#include <algorithm>

namespace KesDriver::Scpi {

namespace {

/// Behind the character that closes what begins at `position`.
std::size_t skipTo(std::string_view text, std::size_t position, char close)
{
    const auto found = text.find(close, position + 1);
    return found == text.npos ? text.size() : found + 1;
}

std::size_t skipBlock(std::string_view text, std::size_t position)
{
    BlockHead head;
    const bool isBlock = (position == 0 || canBlockFollow(text[position - 1])) &&
                         scanBlock(text.substr(position), head) == BlockScan::Complete;
    return isBlock ? std::min(text.size(), position + head.headLength + head.length) : position + 1;
}

/// A doubled quote inside a string is the end of one and the beginning of the next.
std::size_t skipToken(std::string_view text, std::size_t position)
{
    switch (text[position]) {
    case '"':
    case '\'':
        return skipTo(text, position, text[position]);
    case '#':
        return skipBlock(text, position);
    case '(':
        return skipTo(text, position, ')');
    default:
        return position + 1;
    }
}

} // namespace

std::size_t findOutside(std::string_view text, char separator)
{
    std::size_t position = 0;
    while (position < text.size() && text[position] != separator)
        position = skipToken(text, position);
    return std::min(position, text.size());
}

} // namespace KesDriver::Scpi
