#include <KesCommon/Language.h>

#include <KesCommon/Text.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <unordered_map>

namespace lng {

namespace {

struct Known {
    explicit Known(const Translation& translation)
        : code(translation.code), tag(translation.tag), decimalSign(translation.decimalSign)
    {
        for (const auto& [key, text] : translation.texts)
            texts.emplace(key, text);
    }

    const char* code;
    const char* tag;
    char decimalSign;
    std::unordered_map<std::string_view, const char*> texts;
};

/// In the order of their indexes. A text may be fetched before main and after it.
std::vector<Known>& known()
{
    static auto& languages =
        *new std::vector<Known>{Known({"en", "en-US", '.', {}}), Known({"ru", "ru-RU", ',', {}})};
    return languages;
}

} // namespace

Language language = English;

Language addLanguage(const Translation& translation)
{
    if (findLanguage(translation.code))
        throw std::invalid_argument(std::string("the language is there already: ") + translation.code);
    known().emplace_back(translation);
    return static_cast<Language>(known().size() - 1);
}

std::vector<std::string> languageCodes()
{
    std::vector<std::string> codes;
    std::transform(known().begin(), known().end(), std::back_inserter(codes),
                   [](const Known& one) { return one.code; });
    return codes;
}

std::optional<Language> findLanguage(std::string_view code)
{
    const auto found =
        std::find_if(known().begin(), known().end(), [code](const Known& one) { return one.code == code; });
    if (found == known().end())
        return std::nullopt;
    return static_cast<Language>(found - known().begin());
}

const char* languageTag()
{
    return known().at(language).tag;
}

char decimalSign()
{
    return known().at(language).decimalSign;
}

const char* Text::get() const
{
    if (language < pair.size())
        return pair[language];
    const auto& texts = known().at(language).texts;
    const auto found = texts.find(table.empty() ? key : std::string(table).append(".").append(key));
    return found == texts.end() ? pair[English] : found->second;
}

Language languageOfLocale(const std::string& locale)
{
    return findLanguage(locale.substr(0, locale.find_first_of("_.@"))).value_or(English);
}

void useLanguageOfUser()
{
    std::string locale;
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value && *value) {
            locale = value;
            break;
        }
    }
    language = languageOfLocale(locale);
}

} // namespace lng
