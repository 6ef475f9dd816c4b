#pragma once

#include <KesCommon/Text.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Kes {

/// The texts of one library by key, a compile-time constant; a key given twice does not compile.
///
///     constexpr Kes::TextTable table("Example",
///                                    {{"error.Lost", "Lost", "Потеряно"}, {"state.On", "On", "Включено"}});
///     const char* get(const std::string& key)
///     {
///         return table.get(key);
///     }
///
/// In the table of a further language that text has the key "Example.error.Lost". Any thread.
template <std::size_t N>
class TextTable {
public:
    consteval TextTable(std::string_view name, const lng::Text (&texts)[N])
    {
        std::copy(texts, texts + N, _texts.begin());
        std::sort(_texts.begin(), _texts.end(), [](auto& a, auto& b) { return a.key < b.key; });
        for (std::size_t i = 0; i < N; ++i) {
            if (i > 0 && _texts[i - 1].key == _texts[i].key)
                throw std::logic_error("a key is given twice");
            _texts[i].table = name;
        }
    }

    /// The text in the language of the process, valid for ever. For an unknown key it is the key's own
    /// characters, valid as long as the caller's string: copy the result at once.
    const char* get(const std::string& key) const
    {
        const auto found = std::lower_bound(
            _texts.begin(), _texts.end(), key,
            [](const lng::Text& text, const std::string& wanted) { return text.key < wanted; });
        return found == _texts.end() || found->key != key ? key.c_str() : found->get();
    }

private:
    std::array<lng::Text, N> _texts;
};

} // namespace Kes
