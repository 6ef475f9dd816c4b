#pragma once

#include <KesProgram/text/TextPair.h>

/// The texts of the archive file commands and their dialogs, in the language of the process.
/// In a text with "%s" that is the place of the file's path (`Kes::StringHelper::formatC`). Any thread.
namespace KesProgram::FileManagerLocalization {

/// The title of every dialog.
inline const char* title()
{
    return lng::choose({"File manager", "Менеджер файлов"});
}

/// The question before unsaved changes are lost.
inline const char* saveDialog()
{
    return lng::choose({"Save changes to the file %s ?", "Сохранить изменения в файле %s ?"});
}

inline const char* accessError()
{
    return lng::choose({"Error accessing file.\n\nPath:\n%s", "Ошибка доступа к файлу.\n\nПуть:\n%s"});
}

inline const char* saveError()
{
    return lng::choose({"Error saving file.\n\nPath:\n%s", "Ошибка сохранения файла.\n\nПуть:\n%s"});
}

/// The English sentence has no full stop.
inline const char* fileInvalidData()
{
    return lng::choose(
        {"This file contains invalid data\n\nPath:\n%s", "Файл содержит некорректные данные.\n\nПуть:\n%s"});
}

inline const char* tryOpenAtRepairMode()
{
    return lng::choose(
        {"File data error. Try opening in data recovery mode?\n\nPath:\n%s",
         "Ошибка данных файла. Попробовать открыть в режиме восстановления данных?\n\nПуть:\n%s"});
}

inline const char* fileDataSuccessRepaired()
{
    return lng::choose(
        {"Data converted. Prior to the inspection, check the correctness of the settings.\n\nPath:\n%s",
         "Данные преобразованы. Перед проведением проверок проверьте корректность уставок.\n\nПуть:\n%s"});
}

/// The question before a file is overwritten that somebody else has written meanwhile.
inline const char* fileReplaced()
{
    return lng::choose(
        {"The file has been changed by another program since it was opened. Overwrite it?\n\nPath:\n%s",
         "Файл был изменён другой программой после открытия. Перезаписать его?\n\nПуть:\n%s"});
}

/// The label of the program's own files in the file dialogs.
inline const char* archiveFile()
{
    return lng::choose({"Archive", "Файл архива"});
}

/// The label of the further files that can be opened.
inline const char* supportedFile()
{
    return lng::choose({"Archive \"Velmora\"", "Файл архива \"Вельмора\""});
}

/// Shown when a report could not be created.
inline const char* fileCreateError()
{
    return lng::choose({"Error creating file.", "Ошибка создания файла."});
}

} // namespace KesProgram::FileManagerLocalization
