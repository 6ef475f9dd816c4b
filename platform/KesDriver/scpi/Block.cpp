#include <KesDriver/scpi/Block.h>

#include <KesDriver/scpi/Text.h>

namespace KesDriver::Scpi {

bool canBlockFollow(char before)
{
    return before == ',' || isBlank(before);
}

BlockScan scanBlock(std::string_view text, BlockHead& head)
{
    if (text.empty() || text[0] != '#')
        return BlockScan::None;
    if (text.size() < 2)
        return BlockScan::Incomplete;
    if (text[1] < '1' || text[1] > '9')
        return BlockScan::None;
    const auto digits = static_cast<std::size_t>(text[1] - '0');
    head = {2 + digits, 0};
    for (std::size_t i = 2; i < head.headLength; ++i) {
        if (i >= text.size())
            return BlockScan::Incomplete;
        if (!isDigit(text[i]))
            return BlockScan::None;
        head.length = head.length * 10 + static_cast<std::size_t>(text[i] - '0');
    }
    return BlockScan::Complete;
}

std::string writeBlock(std::string_view bytes)
{
    const auto length = std::to_string(bytes.size());
    return '#' + std::to_string(length.size()) + length + std::string(bytes);
}

} // namespace KesDriver::Scpi
