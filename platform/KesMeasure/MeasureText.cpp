#include <KesMeasure/MeasureText.h>

#include <KesCommon/TextTable.h>

namespace lng::Measure {

namespace {

constexpr Kes::TextTable table({
    {"Simulated.title", "SIMULATED DEVICE", "ИМИТИРУЕМОЕ УСТРОЙСТВО"},
    {"Simulated.state", "%s - %s", "%s — %s"},
    {"Simulated.notice",
     "SIMULATED DEVICE: these results come from a simulated bench and say nothing about a real relay.",
     "ИМИТИРУЕМОЕ УСТРОЙСТВО: результаты получены на имитируемом стенде и ничего не говорят о реальном "
     "реле."},

    {"Unknown.title", "ORIGIN UNKNOWN", "ПРОИСХОЖДЕНИЕ НЕИЗВЕСТНО"},
    {"Unknown.notice",
     "ORIGIN UNKNOWN: the file was damaged where it tells which device made these results. They may come "
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

    {"Run.sequenceEnded", "The device ended the output before its time.",
     "Устройство прекратило выдачу раньше времени."},
    {"Run.sequenceLost", "The device does not report the end of the output.",
     "Устройство не сообщает об окончании выдачи."},

    {"Run.nonsense", "The device reported times that make no sense.",
     "Устройство сообщило недостоверные значения времени."},
    {"Run.tooHot",
     "The test has ended: the next step would heat the relay's current input more than it withstands.",
     "Проверка завершена: следующий шаг нагрел бы токовый вход реле сверх допустимого."},
    {"Run.cooling", "%s: cooling of the relay, %s s", "%s: охлаждение реле, %s с"},

    {"State.notReset", "Not reset", "Нет возврата"},
    {"State.noOperation", "No operation", "Не сработало"},
    {"State.contactEarly", "Contact closed too early", "Контакт замкнут заранее"},

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

    {"Report.failed", "The report could not be made.", "Не удалось создать протокол."},
});

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Measure
