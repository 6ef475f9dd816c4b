#pragma once

#include <KesCommon/Export.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The fields that lines of the network protocol consist of. Numbers do not depend on the locale. Reading is
/// strict and throws nothing but std::bad_alloc. Any thread.
namespace KesDriver::FieldText {

/// The text in double quotes, those inside doubled; control characters become blanks.
KES_EXPORT std::string quote(std::string_view text);
/// Nothing for what is not one text in double or single quotes; control characters become blanks.
KES_EXPORT std::optional<std::string> unquote(std::string_view field);

/// The parts between the separators that stand outside quotes, without the blanks around them; one part for
/// a text without any. Nothing for an open quote and for more parts than the greatest number.
KES_EXPORT std::optional<std::vector<std::string_view>> split(std::string_view text, char separator,
                                                              std::size_t mostParts);

/// A finite decimal number with a decimal point; nothing for any other text.
KES_EXPORT std::optional<double> readNumber(std::string_view field);
/// A whole number in plain digits from 0 up to the greatest one; nothing for any other text.
KES_EXPORT std::optional<std::size_t> readCount(std::string_view field, std::size_t greatest);
/// "1" and "0".
KES_EXPORT std::optional<bool> readFlag(std::string_view field);

} // namespace KesDriver::FieldText
