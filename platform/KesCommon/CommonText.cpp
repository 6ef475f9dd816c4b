#include <KesCommon/CommonText.h>

#include <KesCommon/TextTable.h>

namespace lng::Common {

namespace {

constexpr lng::Text texts[] = {
    {"error.ReadOnly", "The list is read-only.", "Список доступен только для чтения."},
    {"error.FileMissing", "The file does not exist.\n\nPath:\n%s", "Файл не существует.\n\nПуть:\n%s"},
    {"error.FileOpen", "No application could be started for the file: %s\n\nPath:\n%s",
     "Не удалось запустить приложение для файла: %s\n\nПуть:\n%s"},
    {"error.Unknown", "An unknown error occurred.", "Произошла неизвестная ошибка."},
    {"error.FileWrite", "Error writing file: %s\n\nPath:\n%s", "Ошибка записи файла: %s\n\nПуть:\n%s"},
    {"option.Unknown", "“%s” is not an option.\nAll options: --help",
     "«%s» не является параметром.\nВсе параметры: --help"},
    {"option.NoValue", "%s needs a value.\nAll options: --help",
     "Для %s нужно значение.\nВсе параметры: --help"},
    {"option.NoText", "The arguments are not text in the encoding of the system.",
     "Аргументы не являются текстом в кодировке системы."},
    {"system.Access", "no permission", "нет прав доступа"},
    {"system.ReadOnlyDisk", "the disk can only be read", "диск доступен только для чтения"},
    {"system.Full", "the disk is full", "на диске нет места"},
    {"system.Quota", "no space is left to this user", "исчерпана дисковая квота пользователя"},
    {"system.Missing", "the file or its folder does not exist", "файл или его папка не существует"},
    {"system.Folder", "there is a folder of this name", "имя занято папкой"},
    {"system.NoFolder", "there is a file where the folder has to be", "на месте папки находится файл"},
    {"system.Disk", "the disk reports an error", "ошибка диска"},
    {"system.TooLarge", "the file would become too large", "файл стал бы слишком большим"},
};

constexpr Kes::TextTable table("Common", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Common
