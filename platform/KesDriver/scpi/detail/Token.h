#pragma once

#include <cstddef>
#include <string_view>

namespace KesDriver::Scpi {

/// Where the separator stands first outside strings, blocks and brackets; the length of the text when it does not. A
/// string, block or bracket that is not closed reaches to the end.
std::size_t findOutside(std::string_view text, char separator);

} // namespace KesDriver::Scpi
