#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Definite-length blocks, `#<digits><length><bytes>`. Any thread.
namespace KesDriver::Scpi {

/// What stands before the bytes of a block; sizes in bytes.
struct BlockHead {
    /// From the `#` to the first byte.
    std::size_t headLength = 0;
    /// Of the content.
    std::size_t length = 0;
};

/// Whether a block can begin at a `#` after this character: only where a parameter does.
KES_EXPORT bool canBlockFollow(char before);

enum class BlockScan { None, Incomplete, Complete };
/// What the text begins with: no block, the first part of a head, or a whole head.
KES_EXPORT BlockScan scanBlock(std::string_view text, BlockHead& head);

KES_EXPORT std::string writeBlock(std::string_view bytes);

} // namespace KesDriver::Scpi
