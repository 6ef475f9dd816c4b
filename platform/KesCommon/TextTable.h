#pragma once

#include <KesCommon/Language.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Kes {

/// A text in both languages under its key.
struct TextEntry {
    std::string_view key;
    const char* english = nullptr;
    const char* russian = nullptr;
};

/// The keyed texts of one library, a compile-time constant; a key given twice does not compile.
///
///     constexpr Kes::TextTable table({{"error.Lost", "Lost", "Потеряно"}, {"state.On", "On", "Включено"}});
///     const char* get(const std::string& key)
///     {
///         return table.get(key);
///     }
///
/// Any thread.
template <std::size_t N>
class TextTable {
public:
    consteval TextTable(const TextEntry (&entries)[N])
    {
        std::copy(entries, entries + N, _entries.begin());
        std::sort(_entries.begin(), _entries.end(), [](auto& a, auto& b) { return a.key < b.key; });
        for (std::size_t i = 0; i < N; ++i) {
            if (i > 0 && _entries[i - 1].key == _entries[i].key)
                throw std::logic_error("a key is given twice");
            if (!_entries[i].english || !_entries[i].russian)
                throw std::logic_error("a text is missing");
        }
    }

    /// The text in the language of the process, valid for ever. For an unknown key it is the key's own
    /// characters, valid as long as the caller's string: copy the result at once.
    const char* get(const std::string& key) const
    {
        const auto found = std::lower_bound(
            _entries.begin(), _entries.end(), key,
            [](const TextEntry& entry, const std::string& wanted) { return entry.key < wanted; });
        if (found == _entries.end() || found->key != key)
            return key.c_str();
        return lng::language == lng::Russian ? found->russian : found->english;
    }

private:
    std::array<TextEntry, N> _entries;
};

} // namespace Kes
