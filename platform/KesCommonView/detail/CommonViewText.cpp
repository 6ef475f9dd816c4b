#include <KesCommonView/detail/CommonViewText.h>

#include <KesCommon/TextTable.h>

namespace lng::CommonView {

namespace {

// The underline stands before the letter that presses the button together with Alt.
constexpr lng::Text texts[] = {
    {"Button.yes", "_Yes", "_Да"},
    {"Button.no", "_No", "_Нет"},
    {"Button.ok", "_OK", "_ОК"},
    {"Button.cancel", "_Cancel", "О_тмена"},
    {"Button.open", "_Open", "_Открыть"},
    {"Button.save", "_Save", "_Сохранить"},
    {"Button.close", "_Close", "_Закрыть"},
    {"File.replace", "The file already exists. Replace it?\n\nPath:\n%s",
     "Файл уже существует. Заменить его?\n\nПуть:\n%s"},
    {"Help.errorOpenFile", "Error opening help file:\n %s", "Ошибка открытия файла помощи:\n %s"},
    {"About.title", "About", "О программе"},
    {"Dialog.question", "Question", "Вопрос"},
    {"Dialog.message", "Message", "Сообщение"},
    {"Dialog.waiting", "Please wait", "Подождите"},
    {"Unattended.answer", "Answer", "Ответ"},
    {"Unattended.noFile", "No file is chosen", "Файл не выбран"},
};

constexpr Kes::TextTable table("CommonView", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::CommonView
