#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/TextTable.h>

namespace lng::Overcurrent {

namespace {

constexpr Kes::TextTable table({
    {"Program.summary", "Tests an inverse-time overcurrent relay with a KESTO device.",
     "Проверка реле максимального тока с зависимой выдержкой времени с помощью устройства КЕСТО."},

    {"Summary.noResults", "settings and plan", "уставки и план проверки"},
    {"Summary.one", "%zu result of %s", "%zu результат от %s"},
    {"Summary.few", "%zu results of %s", "%zu результата от %s"},
    {"Summary.many", "%zu results of %s", "%zu результатов от %s"},

    {"State.point", "Point %zu of %zu: %s x Is", "Точка %zu из %zu: %s x Is"},
    {"State.pickUp", "Pick-up value", "Ток срабатывания"},
    {"State.dropOff", "Drop-off value", "Ток возврата"},

    {"Outcome.None", "No test has been made yet", "Проверка ещё не проводилась"},
    {"Outcome.Lost", "The results of this file could not be read.",
     "Результаты этого файла прочитать не удалось."},
    {"Outcome.counts", "%s: %zu of %zu points within tolerance", "%s: в допуске точек %zu из %zu"},
    {"Outcome.valuesFailed", "%s: %zu of %zu points within tolerance, pick-up or drop-off outside",
     "%s: в допуске точек %zu из %zu, срабатывание или возврат вне допуска"},
    {"Outcome.partly", "%s: %zu of %zu points measured, %zu within tolerance",
     "%s: измерено точек %zu из %zu, в допуске %zu"},

    {"Run.nonsense", "The device reported times that make no sense.",
     "Устройство сообщило недостоверные значения времени."},
    {"Run.archiveReplaced", "The test was stopped: its archive was closed.",
     "Проверка остановлена: её архив закрыт."},

    {"Error.tooMuchData", "The data is too large for an archive.", "Слишком много данных для архива."},

    {"Repair.planLost", "The plan could not be read; the default one is used.",
     "План проверки прочитать не удалось; используется план по умолчанию."},
    {"Repair.planOfTest", "The plan could not be read; that of the test is used.",
     "План проверки прочитать не удалось; используется план выполненной проверки."},
    {"Repair.settingsLost", "The settings could not be read; the default ones are used.",
     "Уставки прочитать не удалось; используются уставки по умолчанию."},
    {"Repair.settingsOfTest", "The settings could not be read; those of the test are used.",
     "Уставки прочитать не удалось; используются уставки выполненной проверки."},
    {"Repair.settingsPartly", "Some settings are missing in the file; check them all.",
     "В файле нет некоторых уставок; проверьте их все."},
    {"Repair.originLost", "Which device made the results, and when, could not be read.",
     "Каким устройством и когда получены результаты, прочитать не удалось."},
    {"Repair.resultsLost", "The results could not be read.", "Результаты прочитать не удалось."},

    {"Plan.refused", "The test cannot be started: %s", "Невозможно начать проверку: %s"},
    {"Run.replaceUnsaved",
     "The results of the last test have not been saved. Begin a new test and lose them?",
     "Результаты последней проверки не сохранены. Начать новую проверку и потерять их?"},
    {"Plan.saveLastValid", "%s\n\nSave with the last valid value instead?",
     "%s\n\nСохранить с последним допустимым значением?"},
    {"Plan.noPoints", "The plan holds no points to try.", "План не содержит ни одной точки."},
    {"Plan.tooManyPoints", "The plan holds %zu points; at most %zu are possible.",
     "В плане %zu точек; допускается не более %zu."},
    {"Plan.notNumbers", "%s: \"%s\" is not a number.", "%s: «%s» не является числом."},
    {"Plan.belowSetting", "At %s x Is the relay does not operate: a point must lie above 1 x Is.",
     "При %s x Is реле не срабатывает: точка должна лежать выше 1 x Is."},
    {"Plan.pointTooLow",
     "A point at %s x Is lies within the pick-up tolerance of %s %% and could fail a healthy relay.",
     "Точка %s x Is лежит в пределах допуска срабатывания %s %%; исправное реле может не пройти проверку."},
    {"Plan.aboveMaximum", "%s x Is is too much: a point must lie at or below %s x Is.",
     "%s x Is — слишком много: точка не должна лежать выше %s x Is."},
    {"Plan.range", "%s is %s, but must lie between %s and %s.", "%s: значение %s, допускается от %s до %s."},
    {"Plan.timeoutTooShort", "The time-out of %s s is too short: at %s x Is the relay may take up to %s s.",
     "Время ожидания %s с слишком мало: при %s x Is реле может срабатывать до %s с."},
    {"Plan.aboveOutput", "%s x Is is %s A, but the device puts out at most %s A.",
     "%s x Is — это %s А, а устройство выдаёт не более %s А."},
    {"Plan.rampRange", "%s: both ends of the ramp must lie between 0 and %s x Is.",
     "%s: ток в начале и в конце должен лежать между 0 и %s x Is."},
    {"Plan.rampUp", "%s: the ramp must rise from below Is to above it, not from %s to %s x Is.",
     "%s: подъём тока должен идти снизу вверх через Is, а не от %s до %s x Is."},
    {"Plan.rampDown", "%s: the ramp must fall from above Is to below it, not from %s to %s x Is.",
     "%s: снижение тока должно идти сверху вниз через Is, а не от %s до %s x Is."},
    {"Plan.rampStep", "%s: a step of %s x Is leads nowhere; it must be above zero.",
     "%s: шаг %s x Is никуда не ведёт; он должен быть больше нуля."},
    {"Plan.rampCoarse",
     "%s: a step of %s x Is is coarser than the pick-up tolerance of %s %% and could fail a healthy relay.",
     "%s: шаг %s x Is больше допуска срабатывания %s %%; исправное реле может не пройти проверку."},
    {"Plan.rampTooLong", "%s: the ramp has more than %zu steps.",
     "%s: ступенчатое изменение тока содержит более %zu шагов."},
    {"Plan.rampDwell", "%s: the dwell is %s s, but must lie between %s and %s s.",
     "%s: выдержка %s с, допускается от %s до %s с."},
    {"Plan.timeout", "Time-out", "Время ожидания"},
    {"Plan.pause", "Pause before each point", "Пауза перед точкой"},
    {"Plan.pickUp", "Pick-up", "Срабатывание"},
    {"Plan.dropOff", "Drop-off", "Возврат"},
    {"Plan.pickUpTolerance", "Pick-up tolerance", "Допуск срабатывания"},
    {"Plan.minimumRatio", "Least drop-off ratio", "Наименьший коэф. возврата"},

    {"Settings.title", "Test object", "Объект испытаний"},
    {"Settings.edit", "Edit...", "Изменить..."},
    {"Settings.editTip", "Edit the test object", "Изменить объект испытаний"},
    {"Settings.curve", "Characteristic", "Характеристика"},
    {"Settings.nominalCurrent", "Nominal current In", "Номинальный ток Iн"},
    {"Settings.settingCurrent", "Setting current Is", "Ток уставки Is"},
    {"Settings.timeMultiplier", "Time multiplier TMS", "Множитель времени TMS"},
    {"Settings.definiteTime", "Definite operate time", "Независимое время"},
    {"Settings.tolerance", "Time tolerance", "Допуск времени"},
    {"Settings.toleranceValue", "%s %%, at least %s ms", "%s %%, но не менее %s мс"},
    {"Settings.ramp", "%s to %s x Is, step %s, dwell %s s", "%s … %s x Is, шаг %s, выдержка %s с"},

    {"Curve.0", "Standard inverse", "Нормально инверсная"},
    {"Curve.1", "Very inverse", "Сильно инверсная"},
    {"Curve.2", "Extremely inverse", "Чрезвычайно инверсная"},
    {"Curve.3", "Long-time inverse", "Длительно инверсная"},
    {"Curve.4", "Definite time", "Независимая"},

    {"PlanView.title", "Plan", "План проверки"},
    {"PlanView.multiples", "Points", "Точки"},
    {"PlanView.multiplesTip", "Multiples of Is, separated by blanks or semicolons",
     "Кратности Is через пробел или точку с запятой"},
    {"PlanView.from", "from", "от"},
    {"PlanView.to", "to", "до"},
    {"PlanView.step", "step", "шаг"},
    {"PlanView.dwell", "dwell", "выдержка"},
    {"PlanView.pickUpRamp", "Pick-up ramp", "Подъём тока"},
    {"PlanView.dropOffRamp", "Drop-off ramp", "Снижение тока"},
    {"PlanView.fieldName", "%s, %s", "%s, %s"},

    {"Unit.second", "s", "с"},
    {"Unit.ampere", "A", "А"},
    {"Unit.percent", "%", "%"},
    {"Unit.setting", "x Is", "x Is"},

    {"Results.number", "No.", "№"},
    {"Results.multiple", "I / Is", "I / Is"},
    {"Results.current", "I, A", "I, А"},
    {"Results.expected", "Expected, s", "Ожид., с"},
    {"Results.measured", "Measured, s", "Измер., с"},
    {"Results.deviation", "Deviation, s", "Откл., с"},
    {"Results.deviationPercent", "Deviation, %", "Откл., %"},
    {"Results.tolerance", "Tolerance, s", "Допуск, с"},
    {"Results.verdict", "Verdict", "Оценка"},
    {"Results.pickUp", "Pick-up", "Срабатывание"},
    {"Results.dropOff", "Drop-off", "Возврат"},
    {"Results.ratio", "Ratio", "Коэф. возврата"},
    {"Results.notYet", "-", "—"},
    {"Results.current.text", "%s A (%s x Is)", "%s А (%s x Is)"},

    {"Verdict.passed", "Passed", "В допуске"},
    {"Verdict.failed", "Failed", "Вне допуска"},
    {"Verdict.noOperation", "No operation", "Не сработало"},
    {"Verdict.contactEarly", "Contact closed too early", "Контакт замкнут заранее"},

    {"Chart.title", "Operate-time characteristic", "Характеристика срабатывания"},
    {"Chart.multiples", "I / Is", "I / Is"},
    {"Chart.seconds", "t, s", "t, с"},

});

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Overcurrent
