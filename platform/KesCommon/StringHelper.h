#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

/// Text that is put together as printf does, and small questions about text. Any thread.
namespace Kes::StringHelper {

/// Formats as printf does, always with the classic decimal point, whatever the locale of the process.
/// When the result cannot be measured, writes "Kes::StringHelper::format - Error during formatting." to
/// standard output and throws std::runtime_error with the same text. The engine of the templates below.
KES_EXPORT std::string formatArguments(const char* format, ...);

/// What a format gets for an argument: the characters of a string object, any other value itself.
template <typename T>
auto formatArgument(const T& value)
{
    if constexpr (requires { value.c_str(); })
        return value.c_str();
    else {
        using Decayed = std::decay_t<const T&>;
        static_assert(std::is_arithmetic_v<Decayed> || std::is_enum_v<Decayed> || std::is_pointer_v<Decayed>,
                      "printf cannot format this type");
        return static_cast<Decayed>(value);
    }
}

/// `format` with arguments of plain C types, as in `formatC<const char*>("Cannot open %s", path)`.
template <typename... Args>
std::string formatC(const char* format, Args... args)
{
    static_assert((std::is_scalar_v<Args> && ...), "Plain C types only; use format() for others");
    return formatArguments(format, args...);
}

/// Formats as printf does; string objects (std::string, Glib::ustring) go to "%s" as they are.
/// The arguments must fit the format: a format is a text of this system, never a user's input.
template <typename... Args>
std::string format(const char* format, const Args&... args)
{
    return formatArguments(format, formatArgument(args)...);
}

template <typename... Args>
std::string format(const std::string& format, const Args&... args)
{
    return formatArguments(format.c_str(), formatArgument(args)...);
}

/// Whether the text ends with the suffix, byte for byte; every text ends with the empty one.
KES_EXPORT bool endsWith(std::string_view text, std::string_view suffix);

/// The text without the blanks, tabs and line ends around it.
KES_EXPORT std::string_view trim(std::string_view text);

/// What may be shown of a text from outside: valid UTF-8 without control characters and such that change the
/// direction of writing or are not seen, without blanks around it. Longer ones are cut to `most` characters,
/// the last of which is an ellipsis then.
KES_EXPORT std::string toPlainText(std::string_view text, std::size_t most);

/// Whether `name` stands in `text` at `start`, whole within the first `textLength` bytes.
/// `ignoreCase` makes the ASCII letters of both cases equal.
KES_EXPORT bool isInclude(std::string_view text, std::string_view name, std::size_t start,
                          std::size_t textLength, bool ignoreCase);

} // namespace Kes::StringHelper
