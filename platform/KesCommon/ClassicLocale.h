#pragma once

#include <KesCommon/Export.h>

#include <locale.h>

namespace Kes {

/// Gives the calling thread the classic locale for a scope: a user's locale may put commas into the numbers
/// that C libraries write and read. Any thread; made and destroyed on the same one.
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
