#pragma once

#include <KesCommon/Export.h>

#include <string>
#include <string_view>

/// Small things about texts in messages. Any thread.
namespace KesDriver::Scpi {

/// A text of at most that many bytes that ends between two characters of UTF-8.
KES_EXPORT std::string cut(std::string text, std::size_t length);

/// ASCII letters only.
KES_EXPORT std::string toUpper(std::string_view text);

/// Blank, tab, and the other control characters that the standard takes for white space. A line end is
/// none: it ends a message.
constexpr bool isBlank(char c)
{
    return static_cast<unsigned char>(c) <= ' ' && c != '\n';
}
constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
constexpr bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

/// Without blanks at the beginning.
KES_EXPORT std::string_view trimFront(std::string_view text);
/// Without blanks at both ends.
KES_EXPORT std::string_view trim(std::string_view text);

/// A word as a document writes it, such as "OVERload": the capitals are its short form. Digits and
/// underscores belong to both forms.
struct KES_EXPORT Mnemonic {
    explicit Mnemonic(std::string_view pattern);
    /// Whether the upper-case text is the short or the long form.
    bool matches(std::string_view upper) const { return upper == shortForm || upper == longForm; }

    std::string shortForm;
    std::string longForm;
};

} // namespace KesDriver::Scpi
