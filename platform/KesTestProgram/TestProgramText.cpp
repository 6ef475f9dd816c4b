#include <KesTestProgram/TestProgramText.h>

#include <KesCommon/TextTable.h>

namespace lng::TestProgram {

namespace {

constexpr lng::Text texts[] = {
    {"State.measurement", "%zu of %zu: %s, %s", "%zu из %zu: %s, %s"},

    {"Run.refused", "The test cannot be started: %s", "Невозможно начать проверку: %s"},
    {"Run.replaceUnsaved",
     "The results of the last test have not been saved. Begin a new test and lose them?",
     "Результаты последней проверки не сохранены. Начать новую проверку и потерять их?"},
    {"Run.continue",
     "The last test ended before its time. Continue it where it ended?\n\n"
     "“No” begins a new test in the place of its results.",
     "Последняя проверка прервана до завершения. Продолжить её с места остановки?\n\n"
     "«Нет» начинает новую проверку вместо имеющихся результатов."},
    {"Again.none", "There are no results yet.", "Результатов пока нет."},
    {"Again.running", "A test is under way.", "Идёт проверка."},
    {"Again.whole", "Everything has been measured.", "Всё уже измерено."},
    {"Again.unknownDevice", "It is not known which device made the results.",
     "Неизвестно, каким устройством получены результаты."},
    {"Again.otherDevice",
     "the results were measured with another device. Begin a new test, or use that device.",
     "результаты получены другим устройством. Начните новую проверку или используйте то же устройство."},
    {"Run.archiveReplaced", "The test was stopped: its archive was closed.",
     "Проверка остановлена: её архив закрыт."},

    {"Plan.saveLastValid", "%s\n\nSave with the last valid value instead?",
     "%s\n\nСохранить с последним допустимым значением?"},

    {"Report.title", "Save the report", "Сохранить протокол"},
    {"Report.kind", "Report (HTML)", "Протокол (HTML)"},
    {"Report.pdf", "Report (PDF)", "Протокол (PDF)"},
    {"Report.making", "The report is being made…", "Создаётся протокол…"},

    {"Error.tooMuchData", "The data is too large for an archive.", "Слишком много данных для архива."},

    {"Repair.settingsLost", "The settings could not be read; the default ones are used.",
     "Уставки прочитать не удалось; используются уставки по умолчанию."},
    {"Repair.settingsOfTest", "The settings could not be read; those of the test are used.",
     "Уставки прочитать не удалось; используются уставки выполненной проверки."},
    {"Repair.settingsPartly", "Some settings are missing in the file; check them all.",
     "В файле нет некоторых уставок; проверьте их все."},
    {"Repair.originLost", "Which device made the results, and when, could not be read.",
     "Каким устройством и когда получены результаты, прочитать не удалось."},
    {"Repair.resultsLost", "The results could not be read.", "Результаты прочитать не удалось."},
};

constexpr Kes::TextTable table("TestProgram", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::TestProgram
