#pragma once

#include <KesCommon/Export.h>

#include <optional>
#include <string>
#include <string_view>

/// Numbers as users and files write them; they depend on the language of the process, never on its locale.
/// Any thread.
namespace Kes::NumberText {

/// The shortest text that reads back as the same number, with a decimal point and without grouping: plain
/// digits from a millionth up to a thousand million million, an exponent outside. "0" for both zeros,
/// "inf", "-inf" and "nan" for what is not finite.
KES_EXPORT std::string write(double value);

/// As `write`, for the user: with a decimal comma in Russian. Not for files.
KES_EXPORT std::string show(double value);

/// Reads a decimal number: sign, digits with a decimal point or comma, exponent, blanks around.
/// Nothing for any other text, for grouped digits, for what is not finite or too large for a double, and for
/// a number other than zero that is too small for one.
KES_EXPORT std::optional<double> read(std::string_view text);

/// Reads a whole number: sign and digits, blanks around. Nothing for any other text or a larger number.
KES_EXPORT std::optional<long long> readInteger(std::string_view text);

} // namespace Kes::NumberText
