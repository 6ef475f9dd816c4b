#pragma once

#include <KesCommon/Text.h>

/// The texts about copies of work that was not saved, in the language of the process. Any thread.
namespace KesProgram::RecoveryLocalization {

/// The title of every question.
inline const char* title()
{
    return lng::Text("Recovery.title", "Unsaved work", "Несохранённая работа").get();
}

/// File, time, and what the copy holds.
inline const char* question()
{
    return lng::Text("Recovery.question",
                     "Work of an earlier session has not been saved. Open it?\n\n"
                     "File: %s\nTime: %s\nContents: %s",
                     "Работа предыдущего сеанса не была сохранена. Открыть её?\n\n"
                     "Файл: %s\nВремя: %s\nСодержимое: %s")
        .get();
}

/// After the copy has not been opened: file, and the day until which it is kept.
inline const char* throwAway()
{
    return lng::
        Text("Recovery.throwAway",
             "Throw the copy away for good? Otherwise it is kept until %s and offered at the next start.\n\n"
             "File: %s",
             "Удалить копию безвозвратно? Иначе она хранится до %s и будет предложена при следующем "
             "запуске.\n\n"
             "Файл: %s")
            .get();
}

/// What a copy holds, with the program's own words for it.
inline const char* notSaved()
{
    return lng::Text("Recovery.notSaved", "%s, not saved", "%s, не сохранено").get();
}

/// In place of the program's own words when it has none.
inline const char* changes()
{
    return lng::Text("Recovery.changes", "changes", "изменения").get();
}

/// What a copy holds that was made of a file before it was overwritten.
inline const char* formerFile()
{
    return lng::Text("Recovery.formerFile", "the file as it was before it was overwritten",
                     "файл до перезаписи")
        .get();
}

} // namespace KesProgram::RecoveryLocalization
