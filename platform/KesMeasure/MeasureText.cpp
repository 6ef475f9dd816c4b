#include <KesMeasure/MeasureText.h>

#include <KesCommon/TextTable.h>

namespace lng::Measure {

namespace {

constexpr lng::Text texts[] = {
    {"Simulated.title", "SIMULATED DEVICE", "ИМИТИРУЕМОЕ УСТРОЙСТВО"},
    {"Simulated.state", "%s — %s", "%s — %s"},
    {"Simulated.notice",
     "SIMULATED DEVICE: these results come from a simulated bench and say nothing about a real relay.",
     "ИМИТИРУЕМОЕ УСТРОЙСТВО: результаты получены на имитируемом стенде и ничего не говорят о реальном "
     "реле."},

    {"Unknown.title", "ORIGIN UNKNOWN", "ПРОИСХОЖДЕНИЕ НЕИЗВЕСТНО"},
    {"Unknown.notice",
     "ORIGIN UNKNOWN: the file was damaged where it says which device made these results. They may come "
     "from a simulated bench.",
     "ПРОИСХОЖДЕНИЕ НЕИЗВЕСТНО: файл повреждён там, где указано, каким устройством получены эти результаты. "
     "Возможно, они получены на имитируемом стенде."},

    {"Outcome.Running", "Test under way", "Идёт проверка"},
    {"Outcome.Passed", "Test passed", "Проверка пройдена"},
    {"Outcome.Failed", "Test failed", "Проверка не пройдена"},
    {"Outcome.Stopped", "Test stopped before its end", "Проверка остановлена до завершения"},
    {"Outcome.Fault", "Test ended by a fault", "Проверка прервана аварией"},
    {"Outcome.stale", "The settings or the plan have been changed since this test.",
     "Уставки или план изменены после этой проверки."},

    {"Outcome.changedByHand", "%s. The file of these results has been changed by hand.",
     "%s. Файл этих результатов изменён вручную."},

    {"Circumstances.serialNumber", "Serial number", "Заводской номер"},
    {"Circumstances.firmwareVersion", "Firmware version", "Версия встроенного ПО"},
    {"Circumstances.calibrationDate", "Last calibration", "Последняя калибровка"},
    {"Circumstances.continuedAt", "Measured again or added last", "Повторено или дополнено"},
    {"Circumstances.checksum", "Checksum of settings and results (SHA-256)",
     "Контрольная сумма уставок и результатов (SHA-256)"},
    {"Circumstances.wrongChecksum", "WRONG: THE FILE HAS BEEN CHANGED BY HAND",
     "НЕ СОВПАДАЕТ: ФАЙЛ ИЗМЕНЁН ВРУЧНУЮ"},
    {"Circumstances.noChecksum", "none in the file", "в файле отсутствует"},

    {"Results.fileKind", "“%s” is no name of a results file; it must end in .csv, .json or .xml.",
     "«%s» — не имя файла результатов; оно должно оканчиваться на .csv, .json или .xml."},

    {"Run.sequenceEnded", "The device ended the output before its time. Start the test again.",
     "Устройство прекратило выдачу раньше времени. Запустите проверку снова."},
    {"Run.sequenceLost",
     "The device does not announce the end of the output. Check the network, and start the test again.",
     "Устройство не сообщает об окончании выдачи. Проверьте сеть и запустите проверку снова."},

    {"Run.times", "%s; %s elapsed, about %s left", "%s; прошло %s, осталось около %s"},
    {"Run.left", "%s, about %s left", "%s, осталось около %s"},
    {"Run.repetition", "%s (%u of %u)", "%s (%u из %u)"},
    {"Run.nonsense",
     "The device reported times that make no sense. Switch it off and on again; if this comes back, it needs "
     "service.",
     "Устройство сообщило недостоверные значения времени. Выключите и снова включите его; если сообщение "
     "повторится, отдайте его в ремонт."},
    {"Run.tooHot",
     "The test has ended: the next step would heat the relay's current input more than it withstands.",
     "Проверка завершена: следующий шаг нагрел бы токовый вход реле сверх допустимого."},
    {"Run.cooling", "%s: cooling of the relay, %s s", "%s: охлаждение реле, %s с"},

    {"State.planned", "Planned", "Запланирована"},
    {"State.passed", "Passed", "В допуске"},
    {"State.failed", "Failed", "Вне допуска"},
    {"State.notReset", "Not reset", "Нет возврата"},
    {"State.noOperation", "No operation", "Не сработало"},
    {"State.noDropOff", "No drop-off", "Не вернулось"},
    {"State.contactEarly", "Contact closed before its value", "Контакт замкнут до подачи величины"},

    {"Results.repeat", "Repeat selected", "Повторить выбранные"},
    {"Results.repeatTip", "Measure the selected rows again; all others keep their results",
     "Измерить выбранные строки ещё раз; остальные сохранят свои результаты"},
    {"Results.repeatValue", "Repeat", "Повторить"},
    {"Results.repeatValueName", "Repeat: %s", "Повторить: %s"},
    {"Results.repeatValueTip", "Measure this value again; all others keep their results",
     "Измерить эту величину ещё раз; остальные сохранят свои результаты"},
    {"Results.noneSelected", "Select the rows to be measured again.",
     "Выберите строки, которые нужно измерить ещё раз."},
    {"Results.continue", "Continue", "Продолжить"},
    {"Results.continueTip", "Continue the test where it ended",
     "Продолжить проверку с того места, где она прервана"},

    {"Results.title", "Results", "Результаты"},
    {"Results.progress", "Progress of the test", "Ход проверки"},

    {"Chart.expected", "expected", "ожидаемая"},
    {"Chart.band", "tolerance", "допуск"},
    {"Chart.planned", "planned", "по плану"},
    {"Chart.passed", "passed", "в допуске"},
    {"Chart.failed", "failed", "вне допуска"},
    {"Chart.notOperated", "no operation", "не сработало"},
    {"Chart.description", "%s: %zu points measured, %zu passed, %zu failed.",
     "%s: измерено точек %zu, в допуске %zu, вне допуска %zu."},

    {"Column.number", "No.", "№"},
    {"Column.object", "Stage", "Ступень"},
    {"Column.quantity", "Quantity", "Величина"},
    {"Column.expected", "Expected", "Ожид."},
    {"Column.band", "Permitted", "Допускается"},
    {"Column.measured", "Measured", "Измерено"},
    {"Column.mean", "Mean", "Среднее"},
    {"Column.spread", "Max \u2212 min", "Размах"},
    {"Column.deviation", "Deviation", "Откл."},
    {"Column.unit", "Unit", "Ед."},
    {"Column.verdict", "Verdict", "Оценка"},

    {"Deviations.title", "Deviations", "Отклонения"},
    {"Deviations.percent", "Deviation, % of tolerance", "Отклонение, % допуска"},

    {"Outcome.noTest", "No test has been made yet", "Проверка ещё не проводилась"},
    {"Outcome.lost", "The results of this file could not be read.",
     "Результаты этого файла прочитать не удалось."},
    {"Outcome.whole", "%s: %zu of %zu values within tolerance", "%s: в допуске величин %zu из %zu"},
    {"Outcome.part", "%s: %zu of %zu values measured, %zu within tolerance",
     "%s: измерено %zu из %zu, в допуске %zu"},

    {"Settings.title", "Test object", "Объект испытаний"},
    {"Settings.edit", "Edit…", "Изменить…"},
    {"Settings.editTip", "Edit the test object", "Изменить объект испытаний"},

    {"Summary.none", "settings", "уставки"},
    {"Summary.one", "%zu result of %s", "%zu результат от %s"},
    {"Summary.few", "%zu results of %s", "%zu результата от %s"},
    {"Summary.many", "%zu results of %s", "%zu результатов от %s"},

    {"Caption.title", "Test report", "Протокол проверки"},
    {"Caption.device", "Test device", "Испытательное устройство"},
    {"Caption.startedAt", "Beginning of the test", "Начало проверки"},
    {"Caption.nameplate", "Nameplate and remarks", "Паспорт и примечания"},
    {"Caption.circumstances", "Test device and file", "Испытательное устройство и файл"},
    {"Caption.plan", "Plan", "План проверки"},
    {"Caption.value", "Value", "Значение"},
    {"Caption.unmeasured", "not measured", "не измерено"},
    {"Caption.page", "Page ", "Страница "},
    {"Caption.ofPages", " of ", " из "},
    {"Caption.tester", "Tested by", "Проверку провёл"},
    {"Caption.approver", "Approved by", "Утвердил"},

    {"Report.failed",
     "The report could not be made. Start the program again; if this comes back, install it again.",
     "Не удалось создать протокол. Перезапустите программу; если сообщение повторится, установите её "
     "заново."},
    {"Pdf.missing",
     "A report as PDF is made by the program WeasyPrint, which is not installed. Install the package "
     "“weasyprint”, or choose a file name that ends in “.html”.",
     "Протокол в формате PDF создаёт программа WeasyPrint, которая не установлена. Установите пакет "
     "«weasyprint» или выберите имя файла с расширением «.html»."},
    {"Pdf.failed", "WeasyPrint could not make the PDF file: %s", "WeasyPrint не смог создать файл PDF: %s"},
    {"Pdf.late", "WeasyPrint did not make the PDF file in two minutes and was ended.",
     "WeasyPrint не создал файл PDF за две минуты и был остановлен."},
};

constexpr Kes::TextTable table("Measure", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Measure
