#include <KesDriver/DriverText.h>

#include <KesCommon/TextTable.h>

namespace lng::Driver {

namespace {

constexpr lng::Text texts[] = {
    {"Kesto.typeName", "KESTO", "КЕСТО"},
    {"Kesto.number", "No.", "№"},

    {"Link.notConnected", "%s is not connected.", "%s: нет связи."},
    {"Link.connected", "%s is connected already.", "%s: связь уже есть."},
    {"Link.noDevice", "%s cannot be reached: there is no device at this address.",
     "%s: нет связи, по этому адресу нет устройства."},
    {"Link.inUse", "%s is in use by another program.", "%s: используется другой программой."},
    {"Link.inUseBy", "%s is in use by %s (%s).", "%s: используется программой %s (%s)."},
    {"Link.thisProgram", "this program", "эта программа"},
    {"Link.noAnswer", "%s does not answer.", "%s: не отвечает."},
    {"Link.dropped", "%s has ended the connection.", "%s: устройство прервало связь."},
    {"Link.nonsense", "%s gives answers that make no sense.", "%s: передаёт недостоверные ответы."},
    {"Link.released", "%s is not controlled by this program any more.",
     "%s: больше не управляется этой программой."},
    {"Link.restarted", "%s has been restarted.", "%s: устройство перезапущено."},
    {"Link.otherProtocol", "%s speaks version %s of the protocol, this program speaks version %s.",
     "%s: версия протокола %s, у программы версия %s."},
    {"Link.stoppedBefore", "%s was stopped before the sequence began.",
     "%s: остановлено до начала последовательности."},

    {"Search.noService",
     "The network cannot be searched, for the Avahi service does not answer; devices can still be entered by "
     "their address.",
     "Поиск в сети невозможен: служба Avahi не отвечает; устройства по-прежнему можно добавить по адресу."},
    {"Search.tooMany", "There are more devices in the network than a search can find.",
     "В сети больше устройств, чем можно найти."},

    {"State.fault", "Fault: %s", "Авария: %s"},
    {"State.outputOff", "The outputs are not switched on.", "Выходы не включены."},
    {"State.sequenceRuns", "A sequence is running.", "Выполняется последовательность."},
    {"State.sequenceArmed", "A sequence waits for its start.", "Последовательность ожидает пуска."},
    {"State.notArmed", "There is no sequence that waits for its start.",
     "Нет последовательности, ожидающей пуска."},
    {"State.startPassed", "The moment of the start has passed.", "Момент пуска уже прошёл."},

    {"Fault.connection", "connection error", "ошибка связи"},
    {"Fault.quickShutdown", "the emergency button was pressed", "нажата аварийная кнопка"},
    {"Fault.disconnected", "%s - channel is disconnected", "%s - канал отключён"},
    {"Fault.overheat", "%s - overheat", "%s - перегрев"},
    {"Fault.overload", "%s - overload", "%s - перегрузка"},

    {"Limit.above", "%s: %s %s is above the limit of %s %s.", "%s: %s %s больше предела %s %s."},
    {"Limit.below", "%s: %s %s is below the limit of %s %s.", "%s: %s %s меньше предела %s %s."},
    {"Limit.notANumber", "%s: the value is not a number.", "%s: значение не является числом."},
    {"Limit.phaseNotANumber", "%s: the phase is not a number.", "%s: фаза не является числом."},
    {"Limit.rampEnd", "%s at the end of the ramp", "%s в конце изменения"},
    {"Limit.frequency", "Frequency", "Частота"},
    {"Limit.currentFrequency", "Frequency of the currents", "Частота токов"},
    {"Limit.voltageFrequency", "Frequency of the voltages", "Частота напряжений"},
    {"Limit.auxDC", "Auxiliary supply", "Оперативное питание"},
    {"Limit.duration", "Duration", "Длительность"},
    {"Limit.debounce", "Debounce time", "Время подавления дребезга"},
    {"Limit.faultAngle", "Fault angle", "Угол начала аварии"},
    {"Limit.noOutput", "Binary output %u does not exist: the device has %u.",
     "Дискретного выхода %u нет: у устройства их %u."},

    {"Sequence.empty", "The sequence has no steps.", "В последовательности нет шагов."},
    {"Sequence.tooLong", "The sequence has %lu steps, the limit is %lu.",
     "Шагов в последовательности: %lu, предел: %lu."},
    {"Sequence.step", "Step %u. %s", "Шаг %u. %s"},
    {"Sequence.noInput", "Binary input %u does not exist: the device has %u.",
     "Дискретного входа %u нет: у устройства их %u."},
    {"Sequence.noCondition", "The end condition names no binary input.",
     "В условии окончания нет ни одного дискретного входа."},

    {"Wire.kind", "There is no test object of the kind “%s”.", "Нет объекта испытаний вида «%s»."},
    {"Wire.setting", "The setting “%s” is not one of %s.", "Уставка «%s» не из числа: %s."},
    {"Wire.value", "The setting “%s” cannot have this value.", "Недопустимое значение уставки: «%s»."},

    {"Server.cannotListen", "No connections can be accepted at %s, port %u: %s",
     "Нельзя принимать соединения по адресу %s, порт %u: %s"},
};

constexpr Kes::TextTable table("Driver", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Driver
