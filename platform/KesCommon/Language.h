#pragma once

#include <KesCommon/Export.h>

#include <cstdint>
#include <string>

/// Texts exist in two languages; one process-wide index chooses between them.
namespace lng {

enum Language : std::uint8_t { English = 0, Russian = 1 };

/// The language of the process; English until a program chooses another one.
/// Set once at the start of main, before threads exist; texts already shown keep their language.
KES_EXPORT extern Language language;

/// The language for a locale name such as "ru_RU.UTF-8"; English for every other one.
KES_EXPORT Language languageOfLocale(const std::string& locale);

/// Sets `language` from the user's environment: the first of LC_ALL, LC_MESSAGES and LANG that is set.
KES_EXPORT void useLanguageOfUser();

} // namespace lng
