#include <Overcurrent/text/OvercurrentText.h>

#include <KesCommon/TextTable.h>

namespace lng::Overcurrent {

namespace {

constexpr lng::Text texts[] = {
    {"Program.summary", "Tests an overcurrent relay with a KESTO device.",
     "Проверка реле максимального тока с помощью устройства КЕСТО."},

    {"Summary.noResults", "settings and plan", "уставки и план проверки"},

    {"Report.title", "Overcurrent relay: operate time, pick-up and drop-off",
     "Реле максимального тока: время срабатывания, токи срабатывания и возврата"},

    {"Report.results", "Operate times", "Время срабатывания"},
    {"Report.values", "Pick-up and drop-off", "Токи срабатывания и возврата"},
    {"Report.chart", "Characteristic", "Характеристика"},
    {"Report.unmeasured", "time not measured", "время не измерено"},

    {"State.point", "Point %zu of %zu: %s, %s × Is", "Точка %zu из %zu: %s, %s × Iуст"},

    {"Outcome.counts", "%s: %zu of %zu points within tolerance", "%s: в допуске точек %zu из %zu"},
    {"Outcome.valuesFailed", "%s: %zu of %zu points within tolerance, pick-up or drop-off outside",
     "%s: в допуске точек %zu из %zu, ток срабатывания или возврата вне допуска"},
    {"Outcome.ended",
     "%s: ended after %zu of %zu points, since the relay did not respond; %zu within tolerance",
     "%s: завершена после точек: %zu из %zu, реле не отвечает; в допуске %zu"},
    {"Outcome.partly", "%s: %zu of %zu points measured, %zu within tolerance",
     "%s: измерено точек %zu из %zu, в допуске %zu"},

    {"Repair.planLost", "The plan could not be read; the default one is used.",
     "План проверки прочитать не удалось; используется план по умолчанию."},
    {"Repair.planOfTest", "The plan could not be read; that of the test is used.",
     "План проверки прочитать не удалось; используется план выполненной проверки."},

    {"Plan.noPoints", "The plan holds no points to try. Enter at least one multiple of Is.",
     "План не содержит ни одной точки. Введите хотя бы одну кратность Iуст."},
    {"Plan.tooManyPoints",
     "The plan holds %zu points; at most %zu are possible. Use fewer multiples or faults.",
     "В плане %zu точек; допускается не более %zu. Уменьшите число кратностей или видов КЗ."},
    {"Plan.notNumbers", "%s: “%s” is not a number.", "%s: «%s» — не число."},
    {"Plan.notWhole", "%s: “%s” is not a whole number.", "%s: «%s» — не целое число."},
    {"Plan.belowSetting", "At %s × Is the relay does not operate: a point must lie above 1 × Is.",
     "При %s × Iуст реле не срабатывает: точка должна лежать выше 1 × Iуст."},
    {"Plan.pointTooLow",
     "A point at %s × Is lies within the pick-up tolerance of %s %% and could fail a healthy relay. Choose a "
     "larger multiple.",
     "Точка %s × Iуст лежит в пределах допуска тока срабатывания %s %%; исправное реле может не пройти "
     "проверку. Выберите большую кратность."},
    {"Plan.aboveMaximum", "%s × Is is too much: a point must lie at or below %s × Is.",
     "%s × Iуст — слишком много: точка не должна лежать выше %s × Iуст."},
    {"Plan.noFaults", "The plan holds no fault to try. Choose at least one.",
     "План не содержит ни одного вида КЗ. Выберите хотя бы один."},
    {"Plan.faultTwice", "The plan holds a fault twice. Remove one of them.",
     "План содержит один вид КЗ дважды. Удалите один из них."},
    {"Plan.outputs", "%u outputs for one input of the relay are not possible: 1 to %u are.",
     "%u выходов на один вход реле невозможно: допускается от 1 до %u."},
    {"Plan.tooFewOutputs",
     "Fault %s takes %u current outputs, with %u in parallel for each phase; the device has %u.",
     "Для КЗ %s нужно токовых выходов: %u, по %u параллельно на фазу; у устройства их %u."},
    {"Plan.oneInput",
     "With outputs in parallel one input of the relay is wired only: it cannot be both %s and %s.",
     "При параллельном соединении выходов подключён один вход реле: это не могут быть и %s, и %s."},
    {"Plan.noStageAt", "At %s × Is no stage operates with fault %s. Choose a larger multiple.",
     "При %s × Iуст ни одна ступень не срабатывает при КЗ %s. Выберите большую кратность."},
    {"Plan.noStage",
     "No stage in use sees fault %s in this direction. Choose another fault or direction, or put a stage "
     "into use.",
     "Ни одна введённая ступень не реагирует на КЗ %s этого направления. Выберите другой вид КЗ или "
     "направление либо введите ступень."},
    {"Plan.range", "%s is %s, but must lie between %s and %s.", "%s: значение %s, допускается от %s до %s."},
    {"Plan.timeoutTooShort", "The time-out of %s s is too short: at %s × Is the relay may take up to %s s.",
     "Время ожидания %s с слишком мало: при %s × Iуст реле может срабатывать до %s с."},
    {"Plan.withinCurrentTolerance",
     "%s × Is is too close to Is: a relay whose current is off by %s %% need not operate there. Choose a "
     "larger multiple.",
     "%s × Iуст слишком близко к Iуст: при погрешности тока %s %% реле может там не сработать. Выберите "
     "большую кратность."},
    {"Plan.tooHotPoint",
     "At %s × Is for up to %s s the relay's current input would be heated more than it withstands. Choose a "
     "smaller multiple or a shorter time-out.",
     "При %s × Iуст в течение времени до %s с токовый вход реле нагреется сверх допустимого. Уменьшите "
     "кратность или время ожидания."},
    {"Plan.tooHotRamp",
     "%s: the relay's current input would be heated more than it withstands. Choose fewer steps or a shorter "
     "step time.",
     "%s: токовый вход реле нагреется сверх допустимого. Уменьшите число шагов или длительность шага."},
    {"Plan.rampByTrip",
     "By the trip contact, pick-up and drop-off can be found with the definite-time characteristic only. Use "
     "a start contact, or have them not measured.",
     "По контакту отключения токи срабатывания и возврата определимы только при независимой характеристике. "
     "Используйте пусковой контакт или откажитесь от их измерения."},
    {"Plan.noSuchInput", "A contact is wired to input %u, but the device has %u inputs only.",
     "Контакт подключён ко входу %u, а у устройства входов только %u."},
    {"Plan.noOperation", "After no operation", "Если реле не сработало"},
    {"Plan.goOn", "go on", "продолжать"},
    {"Plan.end", "end the test", "завершить проверку"},
    {"PlanView.goesOn", "Go on when the relay does not operate", "Продолжать, если реле не сработало"},
    {"Plan.aboveOutput", "%s × Is is %s A, but the device puts out at most %s A.",
     "%s × Iуст — это %s А, а устройство выдаёт не более %s А."},
    {"Plan.rampRange", "%s: both ends of the ramp must lie between 0 and %s × Is.",
     "%s: ток в начале и в конце должен лежать между 0 и %s × Iуст."},
    {"Plan.rampUp", "%s: the ramp must rise from below Is to above it, not from %s to %s × Is.",
     "%s: подъём тока должен идти снизу вверх через Iуст, а не от %s до %s × Iуст."},
    {"Plan.rampDown", "%s: the ramp must fall from above Is to below it, not from %s to %s × Is.",
     "%s: снижение тока должно идти сверху вниз через Iуст, а не от %s до %s × Iуст."},
    {"Plan.rampStep", "%s: a step of %s × Is leads nowhere; it must be above zero.",
     "%s: шаг %s × Iуст недопустим; он должен быть больше нуля."},
    {"Plan.rampCoarse",
     "%s: a step of %s × Is is coarser than the pick-up tolerance of %s %% and could fail a healthy relay. "
     "Choose a smaller step.",
     "%s: шаг %s × Iуст больше допуска тока срабатывания %s %%; исправное реле может не пройти проверку. "
     "Уменьшите шаг."},
    {"Plan.rampTooLong", "%s: the ramp has more than %zu steps. Choose a larger step.",
     "%s: ступенчатое изменение тока содержит более %zu шагов. Увеличьте шаг."},
    {"Plan.rampDwell", "%s: the step time is %s s, but must lie between %s and %s s.",
     "%s: длительность шага %s с, допускается от %s до %s с."},
    {"Plan.repetitions", "Measurements of each point", "Измерений каждой точки"},
    {"Plan.timeout", "Time-out", "Время ожидания"},
    {"Plan.pause", "Pause before each measurement", "Пауза перед каждым измерением"},
    {"Plan.pickUp", "Pick-up", "Ток срабатывания"},
    {"Plan.dropOff", "Drop-off", "Ток возврата"},
    {"Plan.pickUpTolerance", "Pick-up tolerance", "Допуск тока срабатывания"},
    {"Plan.minimumRatio", "Minimum drop-off ratio", "Мин. коэффициент возврата"},

    {"Settings.directional", "Directional", "Направленность"},
    {"Settings.directionalValue", "angle %s°, %s V", "угол %s°, %s В"},
    {"Settings.curveOf", "%s characteristic", "Характеристика %s"},
    {"Settings.toleranceValue", "%s %%, at least %s ms", "%s %%, но не менее %s мс"},
    {"Settings.assignedError", "class %s %%, at least %s ms", "класс %s %%, но не менее %s мс"},
    {"Settings.tripAndStart", "trip: input %u, start: input %u", "откл.: вход %u, пуск: вход %u"},
    {"Settings.tripForBoth", "trip and ramps: input %u", "откл., срабатывание, возврат: вход %u"},
    {"Settings.tripOnly", "trip: input %u, no ramps", "откл.: вход %u, без срабатывания и возврата"},
    {"Settings.withstand", "Withstand, × In", "Стойкость, × Iн"},
    {"Settings.withstandValue", "%s; 10 s: %s; 1 s: %s", "%s; 10 с: %s; 1 с: %s"},
    {"Settings.ramp", "%s to %s × Is, step %s, step time %s s",
     "%s … %s × Iуст, шаг %s, длительность шага %s с"},

    {"Stage.0", "I>", "I>"},
    {"Stage.1", "I>>", "I>>"},
    {"Stage.2", "I>>>", "I>>>"},
    {"Stage.3", "I0>", "3I0>"},

    {"Fault.A", "A", "А"},
    {"Fault.B", "B", "В"},
    {"Fault.C", "C", "С"},
    {"Fault.AB", "AB", "АВ"},
    {"Fault.BC", "BC", "ВС"},
    {"Fault.CA", "CA", "СА"},
    {"Fault.ABC", "ABC", "АВС"},
    {"Fault.N", "N", "N"},
    {"Direction.forward", "forward", "вперёд"},
    {"Direction.reverse", "reverse", "назад"},

    {"PlanView.multiples", "Points", "Точки"},
    {"PlanView.multiplesTip", "Multiples of Is, separated by blanks or semicolons",
     "Кратности Iуст через пробел или точку с запятой"},
    {"PlanView.faults", "Faults", "Виды КЗ"},
    {"PlanView.faultsTip", "N: residual current, a third of it in each phase",
     "N: ток нулевой последовательности, треть тока в каждой фазе"},
    {"PlanView.direction", "Direction", "Направление"},
    {"PlanView.directionTip", "Of the fault as the relay sees it; for directional stages",
     "Направление КЗ относительно реле; для направленных ступеней"},
    {"PlanView.outputs", "Parallel outputs", "Выходов на вход"},
    {"PlanView.outputsTip",
     "How many current outputs are wired together to one input of the relay, for larger currents",
     "Сколько токовых выходов подключено вместе к одному входу реле, для больших токов"},
    {"PlanView.from", "from", "от"},
    {"PlanView.to", "to", "до"},
    {"PlanView.step", "step", "шаг"},
    {"PlanView.dwell", "step time", "длит. шага"},
    {"PlanView.pickUpRamp", "Pick-up ramp", "Подъём тока"},
    {"PlanView.dropOffRamp", "Drop-off ramp", "Снижение тока"},
    {"PlanView.fieldName", "%s, %s", "%s, %s"},

    {"Results.number", "No.", "№"},
    {"Results.fault", "Fault", "КЗ"},
    {"Results.stage", "Stage", "Ступ."},
    {"Results.withFault", "%s (%s, %s)", "%s (%s, %s)"},
    {"Results.multiple", "I / Is", "I / Iуст"},
    {"Results.current", "I, A", "I, А"},
    {"Results.expected", "Exp., s", "Ожид., с"},
    {"Results.measured", "Meas., s", "Измер., с"},
    {"Results.deviation", "Dev., s", "Откл., с"},
    {"Results.deviationPercent", "Dev., %", "Откл., %"},
    {"Results.tolerance", "Tolerance, s", "Допуск, с"},
    {"Results.verdict", "Verdict", "Оценка"},
    {"Results.ratio", "Drop-off ratio", "Коэффициент возврата"},
    {"Results.contactEarly", "Contact closed before the current", "Контакт замкнут до подачи тока"},
    {"Results.notYet", "—", "—"},
    {"Results.interval.text", "%s A (%s … %s × Is)", "%s А (%s … %s × Iуст)"},

    {"Chart.title", "Operate-time characteristic", "Характеристика срабатывания"},
    {"Chart.seconds", "t, s", "t, с"},
};

constexpr Kes::TextTable table("Overcurrent", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Overcurrent
