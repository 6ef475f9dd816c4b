#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/TextTable.h>

namespace lng::Overcurrent {

namespace {

constexpr Kes::TextTable table({
    {"Program.summary", "Tests an inverse-time overcurrent relay with a KESTO device.",
     "Проверка реле максимального тока с зависимой выдержкой времени с помощью устройства КЕСТО."},

    {"Summary.noResults", "settings and plan", "уставки и план проверки"},

    {"Report.title", "Inverse-time overcurrent relay: operate time, pick-up and drop-off",
     "Реле максимального тока с зависимой выдержкой: время срабатывания, токи срабатывания и возврата"},

    {"State.point", "Point %zu of %zu: %s x Is", "Точка %zu из %zu: %s x Is"},
    {"State.pickUp", "Pick-up value", "Ток срабатывания"},
    {"State.dropOff", "Drop-off value", "Ток возврата"},

    {"Outcome.counts", "%s: %zu of %zu points within tolerance", "%s: в допуске точек %zu из %zu"},
    {"Outcome.valuesFailed", "%s: %zu of %zu points within tolerance, pick-up or drop-off outside",
     "%s: в допуске точек %zu из %zu, срабатывание или возврат вне допуска"},
    {"Outcome.ended",
     "%s: ended after %zu of %zu points, since the relay did not respond; %zu within tolerance",
     "%s: завершена после точек: %zu из %zu, реле не отвечает; в допуске %zu"},
    {"Outcome.partly", "%s: %zu of %zu points measured, %zu within tolerance",
     "%s: измерено точек %zu из %zu, в допуске %zu"},

    {"Repair.planLost", "The plan could not be read; the default one is used.",
     "План проверки прочитать не удалось; используется план по умолчанию."},
    {"Repair.planOfTest", "The plan could not be read; that of the test is used.",
     "План проверки прочитать не удалось; используется план выполненной проверки."},

    {"Plan.noPoints", "The plan holds no points to try.", "План не содержит ни одной точки."},
    {"Plan.tooManyPoints", "The plan holds %zu points; at most %zu are possible.",
     "В плане %zu точек; допускается не более %zu."},
    {"Plan.notNumbers", "%s: \"%s\" is not a number.", "%s: «%s» не является числом."},
    {"Plan.notWhole", "%s: \"%s\" is not a whole number.", "%s: «%s» — не целое число."},
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
    {"Plan.withinCurrentTolerance",
     "%s x Is is too close to Is: a relay whose current is off by %s %% need not operate there.",
     "%s x Is слишком близко к Is: при погрешности тока %s %% реле может там не сработать."},
    {"Plan.tooHotPoint",
     "At %s x Is for up to %s s the relay's current input would be heated more than it withstands.",
     "При %s x Is в течение времени до %s с токовый вход реле нагреется сверх допустимого."},
    {"Plan.tooHotRamp", "%s: the relay's current input would be heated more than it withstands.",
     "%s: токовый вход реле нагреется сверх допустимого."},
    {"Plan.rampByTrip",
     "By the trip contact, pick-up and drop-off can be found with the definite-time characteristic only. Use "
     "a "
     "start contact, or have them not measured.",
     "По контакту отключения токи срабатывания и возврата определимы только при независимой характеристике. "
     "Используйте пусковой контакт или откажитесь от их измерения."},
    {"Plan.noSuchInput", "A contact is wired to input %u, but the device has %u inputs only.",
     "Контакт подключён ко входу %u, а у устройства входов только %u."},
    {"Plan.noOperation", "After no operation", "Если реле не сработало"},
    {"Plan.goOn", "go on", "продолжать"},
    {"Plan.end", "end the test", "завершить проверку"},
    {"PlanView.goesOn", "Go on when the relay does not operate", "Продолжать, если реле не сработало"},
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
    {"Plan.repetitions", "Measurements of each point", "Измерений каждой точки"},
    {"Plan.timeout", "Time-out", "Время ожидания"},
    {"Plan.pause", "Pause before each point", "Пауза перед точкой"},
    {"Plan.pickUp", "Pick-up", "Срабатывание"},
    {"Plan.dropOff", "Drop-off", "Возврат"},
    {"Plan.pickUpTolerance", "Pick-up tolerance", "Допуск срабатывания"},
    {"Plan.minimumRatio", "Least drop-off ratio", "Наименьший коэф. возврата"},

    {"Settings.curve", "Characteristic", "Характеристика"},
    {"Settings.nominalCurrent", "Nominal current In", "Номинальный ток Iн"},
    {"Settings.settingCurrent", "Setting current Is", "Ток уставки Is"},
    {"Settings.timeMultiplier", "Time multiplier TMS", "Множитель времени TMS"},
    {"Settings.definiteTime", "Definite operate time", "Независимое время"},
    {"Settings.tolerance", "Time tolerance", "Допуск времени"},
    {"Settings.toleranceValue", "%s %%, at least %s ms", "%s %%, но не менее %s мс"},
    {"Settings.assignedError", "class %s %%, at least %s ms", "класс %s %%, но не менее %s мс"},
    {"Settings.currentTolerance", "Current tolerance", "Допуск тока"},
    {"Settings.contacts", "Contacts", "Контакты"},
    {"Settings.tripAndStart", "trip: input %u, start: input %u", "откл.: вход %u, пуск: вход %u"},
    {"Settings.tripForBoth", "trip and ramps: input %u", "откл. и токи: вход %u"},
    {"Settings.tripOnly", "trip: input %u, no ramps", "откл.: вход %u, без токов"},
    {"Settings.debounce", "Debounce time", "Подавление дребезга"},
    {"Settings.resetTime", "Reset time", "Время возврата"},
    {"Settings.withstand", "Withstand, x In", "Стойкость, x Iн"},
    {"Settings.withstandValue", "%s; 10 s: %s; 1 s: %s", "%s; 10 с: %s; 1 с: %s"},
    {"Settings.ramp", "%s to %s x Is, step %s, dwell %s s", "%s … %s x Is, шаг %s, выдержка %s с"},

    {"Curve.0", "Standard inverse", "Нормально инверсная"},
    {"Curve.1", "Very inverse", "Сильно инверсная"},
    {"Curve.2", "Extremely inverse", "Чрезвычайно инверсная"},
    {"Curve.3", "Long-time inverse (BS 142)", "Длительно инверсная (BS 142)"},
    {"Curve.4", "Definite time", "Независимая"},
    {"Curve.5", "Moderately inverse (IEEE)", "Умеренно инверсная (IEEE)"},
    {"Curve.6", "Very inverse (IEEE)", "Сильно инверсная (IEEE)"},
    {"Curve.7", "Extremely inverse (IEEE)", "Чрезвычайно инверсная (IEEE)"},

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
    {"Unit.millisecond", "ms", "мс"},
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
    {"Results.interval.text", "%s A (%s … %s x Is)", "%s А (%s … %s x Is)"},

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
