#pragma once

#include <KesProgram/text/TextPair.h>

/// The texts of the archive file commands and their dialogs, in the language of the process.
/// In a text with "%s" that is the place of the file's path (`Kes::StringHelper::formatC`). Any thread.
namespace KesProgram::FileManagerLocalization {

/// The title of every dialog.
inline const char* title()
{
    static constexpr lng::TextPair text{"File manager", "Менеджер файлов"};
    return lng::choose(text);
}

/// The question before unsaved changes are lost.
inline const char* saveDialog()
{
    static constexpr lng::TextPair text{"Save changes to the file %s ?", "Сохранить изменения в файле %s ?"};
    return lng::choose(text);
}

inline const char* accessError()
{
    static constexpr lng::TextPair text{"Error accessing file.\n\nPath:\n%s",
                                        "Ошибка доступа к файлу.\n\nПуть:\n%s"};
    return lng::choose(text);
}

inline const char* saveError()
{
    static constexpr lng::TextPair text{"Error saving file.\n\nPath:\n%s",
                                        "Ошибка сохранения файла.\n\nПуть:\n%s"};
    return lng::choose(text);
}

/// The English sentence has no full stop.
inline const char* fileInvalidData()
{
    static constexpr lng::TextPair text{"This file contains invalid data\n\nPath:\n%s",
                                        "Файл содержит некорректные данные.\n\nПуть:\n%s"};
    return lng::choose(text);
}

inline const char* tryOpenAtRepairMode()
{
    static constexpr lng::TextPair text{
        "File data error. Try opening in data recovery mode?\n\nPath:\n%s",
        "Ошибка данных файла. Попробовать открыть в режиме восстановления данных?\n\nПуть:\n%s"};
    return lng::choose(text);
}

inline const char* fileDataSuccessRepaired()
{
    static constexpr lng::TextPair text{
        "Data converted. Prior to the inspection, check the correctness of the settings.\n\nPath:\n%s",
        "Данные преобразованы. Перед проведением проверок проверьте корректность уставок.\n\nПуть:\n%s"};
    return lng::choose(text);
}

/// The question before a file is overwritten that somebody else has written meanwhile.
inline const char* fileReplaced()
{
    static constexpr lng::TextPair text{
        "The file has been changed by another program since it was opened. Overwrite it?\n\nPath:\n%s",
        "Файл был изменён другой программой после открытия. Перезаписать его?\n\nПуть:\n%s"};
    return lng::choose(text);
}

/// The label of the program's own files in the file dialogs.
inline const char* archiveFile()
{
    static constexpr lng::TextPair text{"Archive", "Файл архива"};
    return lng::choose(text);
}

/// The label of the further files that can be opened.
inline const char* supportedFile()
{
    static constexpr lng::TextPair text{"Archive \"Velmora\"", "Файл архива \"Вельмора\""};
    return lng::choose(text);
}

/// Shown when a report could not be created.
inline const char* fileCreateError()
{
    static constexpr lng::TextPair text{"Error creating file.", "Ошибка создания файла."};
    return lng::choose(text);
}

} // namespace KesProgram::FileManagerLocalization
