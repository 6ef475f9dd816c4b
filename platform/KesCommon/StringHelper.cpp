#include <KesCommon/StringHelper.h>

#include <KesCommon/ClassicLocale.h>

#include <glibmm/ustring.h>

#include <algorithm>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace Kes::StringHelper {

namespace {

constexpr const char* formattingError = "Kes::StringHelper::format - Error during formatting.";

bool isShown(gunichar c)
{
    switch (g_unichar_type(c)) {
    case G_UNICODE_CONTROL:
    case G_UNICODE_FORMAT:
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
    case G_UNICODE_PRIVATE_USE:
    case G_UNICODE_SURROGATE:
    case G_UNICODE_UNASSIGNED:
        return false;
    default:
        return true;
    }
}

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

std::string formatArguments(const char* format, ...)
{
    const ClassicLocale locale;
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    std::string text;
    if (length >= 0 && length < INT_MAX) {
        text.resize(static_cast<std::size_t>(length));
        std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    }
    va_end(arguments);
    if (length < 0 || length == INT_MAX) {
        std::cout << formattingError << std::flush;
        throw std::runtime_error(formattingError);
    }
    return text;
}

bool endsWith(std::string_view text, std::string_view suffix)
{
    return text.ends_with(suffix);
}

std::string_view trim(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const auto begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string toPlainText(std::string_view text, std::size_t most)
{
    constexpr gunichar ellipsis = 0x2026;
    // A character takes four bytes at most; what is far beyond the limit need not be looked at.
    const auto looked = text.substr(0, 16 * (most + 1));
    const std::unique_ptr<char, decltype(&g_free)> valid(
        g_utf8_make_valid(looked.data(), static_cast<gssize>(looked.size())), &g_free);
    Glib::ustring shown;
    for (const char* c = valid.get(); *c; c = g_utf8_next_char(c))
        if (const auto read = g_utf8_get_char(c); isShown(read))
            shown += read;
    shown = std::string(trim(shown.raw()));
    if (shown.size() > most)
        shown.replace(most - 1, Glib::ustring::npos, 1, ellipsis);
    return shown.raw();
}

bool isInclude(std::string_view text, std::string_view name, std::size_t start, std::size_t textLength,
               bool ignoreCase)
{
    text = text.substr(0, textLength);
    if (start > text.size() || name.size() > text.size() - start)
        return false;
    return std::equal(name.begin(), name.end(), text.begin() + static_cast<std::ptrdiff_t>(start),
                      [&](char a, char b) { return ignoreCase ? lower(a) == lower(b) : a == b; });
}

} // namespace Kes::StringHelper
