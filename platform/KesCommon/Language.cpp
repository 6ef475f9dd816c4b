#include <KesCommon/Language.h>

#include <cstdlib>

namespace lng {

Language language = English;

Language languageOfLocale(const std::string& locale)
{
    const auto code = locale.substr(0, locale.find_first_of("_.@"));
    return code == "ru" ? Russian : English;
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
