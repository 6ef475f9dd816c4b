#pragma once

#include <KesCommon/Export.h>

#include <string>

/// What the pattern of a file filter, such as "*.abc", means for names. Any thread.
namespace Kes::FileNamePattern {

/// The path with the pattern's extension when its file name has none of its own. What follows the last
/// dot is taken for an extension when it has a letter and no blank, so that "Feeder 2.1" and "2024.11.21"
/// get one. A pattern without a plain extension ("*", "*.*", "data.?") completes nothing.
KES_EXPORT std::string complete(const std::string& path, const std::string& pattern);

/// The path with the extension of the second pattern in the place of that of the first one; as it is when it
/// does not end in that, or one of the patterns has no plain extension.
KES_EXPORT std::string exchange(const std::string& path, const std::string& from, const std::string& to);

/// The pattern for a matcher that distinguishes upper and lower case, so that it accepts Latin letters of
/// both:
/// "*.abc" becomes "*.[aA][bB][cC]".
KES_EXPORT std::string ignoreCase(const std::string& pattern);

} // namespace Kes::FileNamePattern
