#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/RectangleF.h>

#include <string>
#include <vector>

/// Numbers and rectangles as text, for files. All text is in the classic locale, whatever the user's one:
/// the decimal separator is a full stop, and digits are not grouped. Bad text throws nothing. Any thread.
///
/// The instances declared below exist; any other one does not compile.
namespace Kes {

/// The text form of a value. `ClassicLocale`: the form for files. `SpecialValues`: values that are no
/// numbers ("nan", "inf") are written too.
template <typename Value, bool ClassicLocale, bool SpecialValues>
std::string convertToString(const Value& value) = delete;

/// Reads a value from the whole of a text. False leaves the value as it was.
template <typename Value, bool ClassicLocale, bool SpecialValues = true>
bool tryConvert(const std::string& text, Value& value) = delete;

/// The items of a separated list.
template <typename Value>
std::vector<Value> splitConvert(const std::string& text, char separator) = delete;

/// Reads the name of a value that is no ordinary number.
template <typename Value>
unsigned long long tryExtractSpecialFloating(const std::string& text, unsigned long long position,
                                             Value& value) = delete;

/// x, y, width and height, joined by ";" as in "100;50;1280;720". Each has at most four decimals (for small
/// values) and six significant digits; a magnitude below 0.0001 becomes "0". A negative value has six
/// significant digits.
template <>
KES_EXPORT std::string convertToString<RectangleF, true, true>(const RectangleF& value);

/// True when the text holds exactly four items. An item that is not a number counts as 0: the number of
/// items alone decides whether the text is a rectangle.
template <>
KES_EXPORT bool tryConvert<RectangleF, true, true>(const std::string& text, RectangleF& value);

/// One number ("800.5", "-1e3", leading blanks allowed) or one of "nan", "inf" and "infinity" with or
/// without "-"; nothing may follow. A number out of the range of float is refused.
template <>
KES_EXPORT bool tryConvert<float, true>(const std::string& text, float& value);

/// One value per item, 0 for an item that is empty or not a number. A trailing separator stands for
/// a trailing empty item; an empty text is one empty item. Items are not trimmed: "3 " is not a number.
template <>
KES_EXPORT std::vector<float> splitConvert<float>(const std::string& text, char separator);

/// Looks at `position` for "nan", "infinity" or "inf" in letters of either case, with or without "-".
/// Returns the position behind it and sets `value`; without one, returns `position` and leaves `value`.
template <>
KES_EXPORT unsigned long long tryExtractSpecialFloating<double>(const std::string& text,
                                                                unsigned long long position, double& value);

} // namespace Kes
