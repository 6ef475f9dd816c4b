#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Language.h>

#include <array>
#include <string_view>

namespace lng {

/// A text in every language: a key, and the text in English and in Russian, UTF-8 in static storage. All
/// texts that users read are of this type. Further languages come from `addLanguage`, by the same key.
///
///     constexpr lng::Text off{"Output.off", "Off", "Выключено"};
///
/// Keys begin with a word of their library or program, which a `Kes::TextTable` puts before those of its own.
struct KES_EXPORT Text {
    constexpr Text() = default;
    constexpr Text(std::string_view keyOfText, const char* english, const char* russian)
        : key(keyOfText), pair{english, russian}
    {}

    /// The text in the language of the process, valid for ever. Any thread.
    const char* get() const;

    /// The table that the text belongs to, if any.
    std::string_view table;
    std::string_view key;
    std::array<const char*, 2> pair{"", ""};
};

} // namespace lng
