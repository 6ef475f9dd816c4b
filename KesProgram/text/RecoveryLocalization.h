#pragma once

#include <KesCommon/Text.h>

/// The texts about copies of work that was not saved, in the language of the process. What takes the places
/// of "%s" stands in the comments, in the order of the text. Any thread.
namespace KesProgram::RecoveryLocalization {

/// The title of every question.
inline const char* title()
{
    return lng::Text("Recovery.title", "Unsaved work", "Несохранённая работа").get();
}

/// Yes opens the copy in place of the present document, No leads to `throwAway`. File, local time (2026-11-20
/// 14:05 in every language), and what the copy holds (`RecoveryCopy::holds`). Work that was in no file yet
/// has the name of a new document.
inline const char* question()
{
    return lng::Text("Recovery.question",
                     "Work of an earlier session has not been saved. Open it?\n\n"
                     "File: %s\nTime: %s\nContents: %s",
                     "Работа предыдущего сеанса не была сохранена. Открыть её?\n\n"
                     "Файл: %s\nВремя: %s\nСодержимое: %s")
        .get();
}

/// After the copy has not been opened: the day until which it is kept (`RecoveryStore::longestStay`), and the
/// file. Yes deletes the copy at once; No keeps it, and it is offered at each start until that day.
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

/// What a copy holds, with the program's own words for it (`ProgramModel::getDataSummary`), such as "8
/// results of 2026-11-20 14:05, not saved".
inline const char* notSaved()
{
    return lng::Text("Recovery.notSaved", "%s, not saved", "%s, не сохранено").get();
}

/// In place of the program's own words when it has none; the words "not saved" are put behind it by
/// `notSaved`, as behind those.
inline const char* changes()
{
    return lng::Text("Recovery.changes", "changes", "изменения").get();
}

/// What a copy holds that was made of a file before it was overwritten. It is offered when the program has
/// ended before the new content was in the file, whole.
inline const char* formerFile()
{
    return lng::Text("Recovery.formerFile", "the file as it was before it was overwritten",
                     "файл до перезаписи")
        .get();
}

} // namespace KesProgram::RecoveryLocalization
