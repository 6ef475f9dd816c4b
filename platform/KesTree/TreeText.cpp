#include <KesTree/TreeText.h>

#include <KesCommon/TextTable.h>

namespace lng {

namespace {

constexpr lng::Text texts[] = {
    {"Value.yes", "yes", "да"},
    {"Value.no", "no", "нет"},
    {"View.unused", "not used at present", "сейчас не используется"},
    {"Error.notNumber", "“%s” is not a number", "«%s» — не число"},
    {"Error.notInteger", "“%s” is not a whole number", "«%s» — не целое число"},
    {"Error.allowed", "%s; allowed: %s", "%s; допустимо: %s"},
    {"Error.outside", "%s is outside the range %s", "%s вне диапазона %s"},
    {"Error.notFinite", "the value is not a finite number", "значение не является конечным числом"},
    {"Error.notBoolean", "“%s” is neither “yes” nor “no”", "«%s» — не «да» и не «нет»"},
    {"Error.notChoice", "“%s” is not one of the choices", "«%s» нет среди вариантов"},
    {"Error.choiceIndex", "there is no choice with this number", "варианта с таким номером нет"},
    {"Error.notText", "the text holds characters that cannot be kept in a file",
     "текст содержит символы, которые нельзя сохранить в файле"},
    {"Error.wrongType", "the value is of another kind", "значение другого вида"},
    {"Error.group", "a group has no value of its own", "группа не имеет собственного значения"},
    {"Error.read", "The values of the test object cannot be read",
     "Не удалось прочитать значения объекта испытаний"},
    {"Error.xml", "The data are not well-formed XML", "Данные не являются правильным XML"},
    {"Error.xmlForm", "The data are not those of a test object", "Данные не относятся к объекту испытаний"},
    {"Error.version", "The data have been written by a newer program (version “%s”)",
     "Данные записаны более новой программой (версия «%s»)"},
    {"Error.unknownId", "Unknown item “%s”", "Неизвестный элемент «%s»"},
    {"Error.twice", "The item “%s” is given twice", "Элемент «%s» задан дважды"},
    {"Error.missing", "The item “%s” is missing", "Отсутствует элемент «%s»"},
    {"Error.refused", "the value is refused", "значение не принято"},
};

constexpr Kes::TextTable table("Tree", texts);

} // namespace

const char* Tree::get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng
