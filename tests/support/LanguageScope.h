#pragma once

#include <KesCommon/Language.h>

namespace KesTest {

/// Sets the language of the process until the object dies.
class LanguageScope {
public:
    explicit LanguageScope(lng::Language language) : _previous(lng::language) { lng::language = language; }
    ~LanguageScope() { lng::language = _previous; }
    LanguageScope(const LanguageScope&) = delete;
    LanguageScope& operator=(const LanguageScope&) = delete;

private:
    const lng::Language _previous;
};

} // namespace KesTest
