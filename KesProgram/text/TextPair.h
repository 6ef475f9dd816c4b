#pragma once

#include <KesCommon/Language.h>

#include <array>

namespace lng {

/// A text in both languages: English first, Russian second, UTF-8, in static storage.
using TextPair = std::array<const char*, 2>;

/// The text of the pair in the language of the process: `return choose({"Off", "Выключено"});`. Any thread.
inline const char* choose(const TextPair& pair)
{
    return pair[language == Russian ? 1 : 0];
}

} // namespace lng
