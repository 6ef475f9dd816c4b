#pragma once

#include <KesCommon/Export.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Texts exist in English, Russian and every language that a program has added; one process-wide index
/// chooses between them.
namespace lng {

/// Added languages have the values that follow.
enum Language : std::uint8_t { English = 0, Russian = 1 };

/// The language of the process; English until a program chooses another one.
/// Set once at the start of main, before threads exist; texts already shown keep their language.
KES_EXPORT extern Language language;

/// A line of a translator's table: the text of one key in one language, in static storage.
struct TranslatedText {
    /// Table and key, as in "Program.Menu.file"; `tests/desktop/texts.py table` lists all of them.
    std::string_view key;
    const char* text = nullptr;
};

/// A further language. Everything is in static storage; a text that is missing is shown in English.
struct Translation {
    /// As users name it: "de".
    const char* code = nullptr;
    /// As in the folder of the help files and in reports: "de-DE".
    const char* tag = nullptr;
    /// Of numbers that users read.
    char decimalSign = '.';
    std::span<const TranslatedText> texts;
};

/// Adds a language and returns its index. At the start of main, before the command line is read and threads
/// exist. Throws `std::invalid_argument` for a code that is there already.
KES_EXPORT Language addLanguage(const Translation& translation);

/// The codes of all languages, in the order of their indexes.
KES_EXPORT std::vector<std::string> languageCodes();
KES_EXPORT std::optional<Language> findLanguage(std::string_view code);
/// The tag of the language of the process, such as "en-US". Any thread.
KES_EXPORT const char* languageTag();
/// The decimal sign of the language of the process. Any thread.
KES_EXPORT char decimalSign();

/// The language for a locale name such as "ru_RU.UTF-8"; English for every unknown one.
KES_EXPORT Language languageOfLocale(const std::string& locale);

/// Sets `language` from the user's environment: the first of LC_ALL, LC_MESSAGES and LANG that is set.
KES_EXPORT void useLanguageOfUser();

} // namespace lng
