#pragma once

#include <KesCommon/Text.h>

/// The texts of the archive file commands and their dialogs, in the language of the process.
/// `ArchiveManagerPresenter` shows them; where there are buttons to choose from, the comment names them. In a
/// text with "%s" that is the place of the file's path (`Kes::StringHelper::formatC`). Any thread.
namespace KesProgram::FileManagerLocalization {

/// The title of every dialog.
inline const char* title()
{
    return lng::Text("FileManager.title", "File manager", "Менеджер файлов").get();
}

/// The question before unsaved changes are lost: Yes, No, Cancel. A new document stands in it as "[New]." and
/// the extension.
inline const char* saveDialog()
{
    return lng::Text("FileManager.saveDialog", "Save changes to the file %s ?",
                     "Сохранить изменения в файле %s ?")
        .get();
}

/// The file could not be opened (`FileAccessError`).
inline const char* accessError()
{
    return lng::Text("FileManager.accessError", "Error accessing file.\n\nPath:\n%s",
                     "Ошибка доступа к файлу.\n\nПуть:\n%s")
        .get();
}

/// A file could not be written; the path is that of the present document, whose data is still unsaved. An
/// unattended run says so of its other files, too.
inline const char* saveError()
{
    return lng::Text("FileManager.saveError", "Error saving file.\n\nPath:\n%s",
                     "Ошибка сохранения файла.\n\nПуть:\n%s")
        .get();
}

/// The program cannot use the content (`DataFormatError`), and repairing it is not offered or has failed. The
/// English sentence has no full stop.
inline const char* fileInvalidData()
{
    return lng::Text("FileManager.fileInvalidData", "This file contains invalid data\n\nPath:\n%s",
                     "Файл содержит некорректные данные.\n\nПуть:\n%s")
        .get();
}

/// The question after the program has refused the content: Yes, No. Yes opens the file again for repair; see
/// `ProgramModel::setDataStream`.
inline const char* tryOpenAtRepairMode()
{
    return lng::Text("FileManager.tryOpenAtRepairMode",
                     "File data error. Try opening in data recovery mode?\n\nPath:\n%s",
                     "Ошибка данных файла. Попробовать открыть в режиме восстановления данных?\n\nПуть:\n%s")
        .get();
}

/// After a repair that the program has accepted. It names no losses: what could not be read is the program's
/// to say, or the user's to find.
inline const char* fileDataSuccessRepaired()
{
    return lng::
        Text("FileManager.fileDataSuccessRepaired",
             "Data converted. Prior to the inspection, check the correctness of the settings.\n\nPath:\n%s",
             "Данные преобразованы. Перед проведением проверок проверьте корректность уставок.\n\nПуть:\n%s")
            .get();
}

/// The question before a file is overwritten that somebody else has written meanwhile: Yes, No. No leaves the
/// file and the document as they are.
inline const char* fileReplaced()
{
    return lng::Text(
               "FileManager.fileReplaced",
               "The file has been changed by another program since it was opened. Overwrite it?\n\nPath:\n%s",
               "Файл был изменён другой программой после открытия. Перезаписать его?\n\nПуть:\n%s")
        .get();
}

/// The label of the program's own files in the file dialogs. The pattern is put behind it, such as "Archive
/// (*.abc)".
inline const char* archiveFile()
{
    return lng::Text("FileManager.archiveFile", "Archive", "Файл архива").get();
}

/// The label of the further files that can be opened (`ProgramModel::getSupportedExtension`), whatever
/// extension the program names for them. The pattern is put behind it.
inline const char* supportedFile()
{
    return lng::Text("FileManager.supportedFile", "Archive \"Velmora\"", "Файл архива \"Вельмора\"").get();
}

/// Shown when a report could not be created; it names no path, because `ProgramModel::createReport` gave
/// none. An unattended run says it of an empty report, too.
inline const char* fileCreateError()
{
    return lng::Text("FileManager.fileCreateError", "Error creating file.", "Ошибка создания файла.").get();
}

} // namespace KesProgram::FileManagerLocalization
