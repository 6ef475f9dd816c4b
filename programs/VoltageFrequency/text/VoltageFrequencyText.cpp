#include <VoltageFrequency/text/VoltageFrequencyText.h>

#include <KesCommon/TextTable.h>

namespace lng::VoltageFrequency {

namespace {

constexpr lng::Text texts[] = {
    {"Program.summary", "Tests a voltage and frequency relay with a KESTO device.",
     "Проверка реле напряжения и частоты с помощью устройства КЕСТО."},
    {"Report.title", "Voltage and frequency relay: pick-up, drop-off and operate time",
     "Реле напряжения и частоты: срабатывание, возврат и время срабатывания"},

    {"Stage.undervoltage", "27 U<", "27 U<"},
    {"Stage.overvoltage", "59 U>", "59 U>"},
    {"Stage.underfrequency", "81 f<", "81 f<"},
    {"Stage.overfrequency", "81 f>", "81 f>"},
    {"Stage.frequencyRate", "81R df/dt", "81R df/dt"},

    {"Quantity.pickUp", "pick-up", "срабатывание"},
    {"Quantity.dropOff", "drop-off", "возврат"},
    {"Quantity.operateTime", "operate time", "время срабатывания"},

    {"Settings.nominal", "Nominal", "Номинальные"},
    {"Settings.inputs", "Inputs", "Входы"},
    {"Settings.inputsValue", "trip %u, start %u", "отключение %u, пуск %u"},
    {"Settings.setting", "Setting, delay", "Уставка, выдержка"},
    {"Settings.dropOff", "Drop-off", "Возврат"},
    {"Settings.tolerance", "Tolerances", "Допуски"},
    {"Settings.healthy", "Nominal values before", "Номинальный режим перед измерением"},
    {"Settings.reset", "Reset time", "Время возврата"},
    {"Settings.ramp", "Ramp", "Изменение"},
    {"Settings.rampValue", "%s s per tolerance", "%s с на допуск"},
    {"Settings.repetitions", "Measurements of each value", "Измерений величины"},
    {"Settings.steps", "Steps of operate times", "Скачки для времени срабатывания"},

    {"Check.noStage", "no stage of the relay is in use.", "ни одна ступень реле не введена."},
    {"Check.sameInput", "trip and start contact need an input each.",
     "контактам отключения и пуска нужны разные входы."},
    {"Check.tooNear",
     "%s: setting and drop-off must lie beyond the nominal value by at least one and a half tolerances.",
     "%s: уставка и возврат должны отстоять от номинального значения не менее чем на полтора допуска."},
    {"Check.rampTooFast",
     "%s: the ramp is so fast that the rate stage sees it. Give it more time per tolerance.",
     "%s: частота меняется так быстро, что сработает ступень скорости. Увеличьте время изменения на допуск."},
    {"Check.rateReaches",
     "testing df/dt changes the frequency by %s Hz, which reaches the setting of %s. Switch one of them off.",
     "при проверке df/dt частота меняется на %s Гц и достигает уставки %s. Выведите одну из ступеней."},
};

constexpr Kes::TextTable table("VoltageFrequency", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::VoltageFrequency
