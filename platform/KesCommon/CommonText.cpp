#include <KesCommon/CommonText.h>

#include <KesCommon/TextTable.h>

namespace lng::Common {

namespace {

constexpr Kes::TextTable table({
    {"error.ReadOnly", "The list is read-only.", "Список доступен только для чтения."},
    {"error.FileMissing", "The file does not exist.\n\nPath:\n%s", "Файл не существует.\n\nПуть:\n%s"},
    {"error.FileOpen", "No application could be started for the file: %s\n\nPath:\n%s",
     "Не удалось запустить приложение для файла: %s\n\nПуть:\n%s"},
    {"error.Unknown", "An unknown error occurred.", "Произошла неизвестная ошибка."},
    {"error.FileWrite", "Error writing file: %s\n\nPath:\n%s", "Ошибка записи файла: %s\n\nПуть:\n%s"},
});

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Common
