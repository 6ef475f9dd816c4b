#pragma once

#include <KesProgram/text/TextPair.h>

/// The texts about copies of work that was not saved, in the language of the process. Any thread.
namespace KesProgram::RecoveryLocalization {

/// The title of every question.
inline const char* title()
{
    static constexpr lng::TextPair text{"Unsaved work", "Несохранённая работа"};
    return lng::choose(text);
}

/// File, time, and what the copy holds.
inline const char* question()
{
    static constexpr lng::TextPair text{"Work of an earlier session has not been saved. Open it?\n\n"
                                        "File: %s\nTime: %s\nContents: %s",
                                        "Работа предыдущего сеанса не была сохранена. Открыть её?\n\n"
                                        "Файл: %s\nВремя: %s\nСодержимое: %s"};
    return lng::choose(text);
}

/// After the copy has not been opened: file, and the day until which it is kept.
inline const char* throwAway()
{
    static constexpr lng::TextPair text{
        "Throw the copy away for good? Otherwise it is kept until %s and offered at the next start.\n\n"
        "File: %s",
        "Удалить копию безвозвратно? Иначе она хранится до %s и будет предложена при следующем запуске.\n\n"
        "Файл: %s"};
    return lng::choose(text);
}

/// What a copy holds, with the program's own words for it.
inline const char* notSaved()
{
    static constexpr lng::TextPair text{"%s, not saved", "%s, не сохранено"};
    return lng::choose(text);
}

/// In place of the program's own words when it has none.
inline const char* changes()
{
    static constexpr lng::TextPair text{"changes", "изменения"};
    return lng::choose(text);
}

/// What a copy holds that was made of a file before it was overwritten.
inline const char* formerFile()
{
    static constexpr lng::TextPair text{"the file as it was before it was overwritten", "файл до перезаписи"};
    return lng::choose(text);
}

} // namespace KesProgram::RecoveryLocalization
