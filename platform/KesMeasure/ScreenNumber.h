#pragma once

#include <KesCommon/Export.h>

#include <string>

/// Numbers as the user of the program reads them: with a decimal comma in Russian, a point in English. Any
/// thread.
namespace KesMeasure::ScreenNumber {

/// With this many decimals, 0 to 6.
KES_EXPORT std::string fixed(double value, int decimals);

/// A multiple of Is: with two decimals, or three when the third is not zero.
KES_EXPORT std::string multiple(double value);

/// A current: with three decimals; below one ampere with more when its first four digits need them.
KES_EXPORT std::string amperes(double value);

/// As `fixed`, with a sign in front of a positive number too.
KES_EXPORT std::string withSign(double value, int decimals);

/// With as few digits as the number needs, at most six significant ones.
KES_EXPORT std::string shortest(double value);

/// A time in seconds as a clock shows it: "0:42", "1:02:05".
KES_EXPORT std::string duration(double seconds);

} // namespace KesMeasure::ScreenNumber
