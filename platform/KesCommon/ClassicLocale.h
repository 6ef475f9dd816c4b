#pragma once

#include <KesCommon/Export.h>

#include <locale.h>

namespace Kes {

/// Gives the calling thread the classic locale for a scope: a user's locale may put commas into the numbers
/// that C libraries write and read. Any thread; made and destroyed on the same one.
///
/// All categories change, so meanwhile the C library knows ASCII letters only and gives its messages in
/// English. Other threads are not touched, nor are C++ streams, which have a locale of their own. Scopes
/// may lie within each other.
class KES_EXPORT ClassicLocale {
public:
    ClassicLocale();
    ~ClassicLocale();
    ClassicLocale(const ClassicLocale&) = delete;
    ClassicLocale& operator=(const ClassicLocale&) = delete;

private:
    locale_t _previous;
};

} // namespace Kes
