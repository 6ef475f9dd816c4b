#include <KesDevice/HardwareManagerText.h>

#include <KesCommon/TextTable.h>

namespace lng {

namespace {

constexpr lng::Text texts[] = {
    {"Common.KestoStateOk", "Ready for operation", "Готово к работе"},
    {"Common.KestoStateUnknown", "State unknown", "Состояние неизвестно"},
    {"Common.kestos", "Devices", "Устройства"},

    {"auxDC.enabled", "The auxiliary supply is on while the device is connected",
     "Оперативное питание включено, пока есть связь с устройством"},

    {"Status.connecting", "Connecting to KESTO %s", "Соединение с КЕСТО %s"},
    {"Status.starting", "Switching on the outputs", "Включение выходов"},
    {"Status.stopping", "Switching off the outputs", "Отключение выходов"},
    {"Status.arming", "Preparing the common start", "Подготовка общего пуска"},
    {"Status.disconnecting", "Disconnecting from the devices", "Отключение от устройств"},

    {"Errors.General.prepare", "Error on connecting to the devices.", "Ошибка соединения с устройствами."},
    {"Errors.General.startWorkingMode", "Error on starting working mode.", "Ошибка запуска рабочего режима."},
    {"Errors.General.stopWorkingMode", "Error on stopping working mode.",
     "Ошибка завершения рабочего режима."},
    {"Errors.General.alreadyRunning", "The outputs are already switched on.", "Выходы уже включены."},
    {"Errors.General.noKestos", "The hardware configuration does not contain any KESTO.",
     "Конфигурация аппаратных средств не содержит КЕСТО."},
    {"Errors.General.replaced", "The hardware configuration has been replaced.",
     "Конфигурация аппаратных средств заменена."},
    {"Errors.General.outputFailed", "The outputs do not work any more.", "Выходы больше не работают."},

    {"Errors.Sync.start", "Error on starting the sequences.", "Ошибка пуска последовательностей."},
    {"Errors.Sync.outputOff", "The outputs are not switched on. Start the test again.",
     "Выходы не включены. Запустите проверку снова."},
    {"Errors.Sync.noSequences",
     "Sequences cannot be run in the synchronisation mode “%s”. Choose another mode in “Setting up KESTO”.",
     "В режиме синхронизации «%s» последовательности не выполняются. Выберите другой режим в окне «Настройка "
     "КЕСТО»."},
    {"Errors.Sync.tooFewDevices",
     "There are %zu sequences, but only %zu devices. Add devices in “Setting up KESTO”.",
     "Последовательностей %zu, а устройств только %zu. Добавьте устройства в окне «Настройка КЕСТО»."},
    {"Errors.Sync.nothingToRun", "There is no sequence to run.", "Нет последовательностей для выполнения."},
    {"Errors.Sync.noneForSeveral",
     "Without synchronisation only one device can run a sequence. Choose another mode in “Setting up KESTO”.",
     "Без синхронизации последовательность может выполнять только одно устройство. Выберите другой режим в "
     "окне «Настройка КЕСТО»."},
    {"Errors.Sync.firstNeeded",
     "The first device starts the others, so it needs a sequence of its own. Choose another mode in “Setting "
     "up KESTO”.",
     "Первое устройство запускает остальные, поэтому ему нужна собственная последовательность. Выберите "
     "другой режим в окне «Настройка КЕСТО»."},
    {"Errors.Sync.stopped", "The sequences were stopped.", "Последовательности остановлены."},
    {"Errors.Sync.modeNotSupportedByTest", "The test does not support the synchronisation mode",
     "Проверка не поддерживает режим синхронизации"},

    {"Errors.Kesto.addressTaken", "The configuration already contains a KESTO with the address %s.",
     "Конфигурация уже содержит КЕСТО с адресом %s."},
    {"Errors.Channels.noCurrent", "Current %zu does not exist: the devices have %zu together.",
     "Тока %zu нет: у устройств их вместе %zu."},
    {"Errors.Channels.noVoltage", "Voltage %zu does not exist: the devices have %zu together.",
     "Напряжения %zu нет: у устройств их вместе %zu."},

    {"Errors.Kesto.connectionLost", "%s: the connection was lost.", "%s: связь потеряна."},
    {"Errors.Kesto.disconnected", "%s has been disconnected.", "%s: соединение закрыто."},
    {"Errors.Kesto.notConnected", "%s is not connected.", "%s: нет связи."},
    {"Errors.Kesto.switchedOn", "%s: the outputs are already switched on.", "%s: выходы уже включены."},
    {"Errors.Kesto.switchedOff", "%s: the outputs were switched off.", "%s: выходы отключены."},
    {"Errors.Kesto.disobeys", "%s does not obey, and was disconnected.",
     "%s: не выполняет команды, соединение закрыто."},
    {"Errors.Kesto.outputEnded", "The outputs were switched off", "Выходы отключены"},
    {"Errors.Kesto.sequenceEnded", "The device has ended its sequence early",
     "Устройство завершило последовательность раньше времени"},
    {"Errors.Kesto.untold", "%s: what it has reported could not be processed (%s); it was disconnected.",
     "%s: сообщение не удалось обработать (%s), соединение закрыто."},
    {"Errors.Kesto.nonsense",
     "%s sends data that make no sense. Switch the device off and on again; if this comes back, it needs "
     "service.",
     "%s: передаёт недостоверные данные. Выключите и снова включите устройство; если сообщение повторится, "
     "отдайте его в ремонт."},
    {"Errors.Kesto.slowRelease",
     "%s leaves its outputs on for %s ms when it has lost its controller; no more than %s ms is safe.",
     "%s: при потере связи с программой выходы остаются включёнными %s мс; безопасно не более %s мс."},
    {"Errors.Kesto.notReady", "Not ready for operation", "Не готово к работе"},
    {"Errors.Kesto.fault", "Fault: %s", "Авария: %s"},

    {"Errors.File.read", "The hardware configuration could not be restored: %s",
     "Не удалось восстановить конфигурацию аппаратных средств: %s"},
    {"Errors.File.write", "The hardware configuration could not be kept: %s",
     "Не удалось сохранить конфигурацию аппаратных средств: %s"},

    {"Sync.None.name", "No synchronisation", "Без синхронизации"},
    {"Sync.None.shortName", "None", "Нет"},
    {"Sync.PowerNetwork.name", "Mains voltage", "Сеть питания"},
    {"Sync.PowerNetwork.shortName", "Mains", "Сеть"},
    {"Sync.PowerNetwork.info",
     "Every device follows the phase of the mains voltage that feeds it.\n\n"
     "Feed all devices from the same phase. The outputs have the frequency of the mains and agree within 1 "
     "degree. Because the devices do not share a time of start, sequences cannot be run in this mode: only "
     "steady outputs are possible.",
     "Каждое устройство следует за фазой питающей его сети.\n\n"
     "Все устройства должны питаться от одной и той же фазы. Частота выходов равна частоте сети, расхождение "
     "фаз не более 1 градуса. Общего момента пуска у устройств нет, поэтому последовательности в этом режиме "
     "не выполняются: возможна только установившаяся выдача."},
    {"Sync.ExternalStart.name", "External start", "Внешний пуск"},
    {"Sync.ExternalStart.shortName", "Ext. start", "Внешн. пуск"},
    {"Sync.ExternalStart.info",
     "A contact closed by hand or by other equipment starts all devices.\n\n"
     "Wire the start contact to binary input 8 of every device. The devices start within 100 microseconds of "
     "each other; afterwards each one runs on its own clock and departs from the others by up to 5 "
     "microseconds in every second.",
     "Все устройства запускаются контактом, который замыкается вручную или другим оборудованием.\n\n"
     "Подключите пусковой контакт к дискретному входу 8 каждого устройства. Разброс пуска не более 100 мкс; "
     "далее каждое устройство работает по своим часам и расходится с другими не более чем на 5 мкс за "
     "секунду."},
    {"Sync.BinaryOutput.name", "Start by binary output", "Пуск от дискретного выхода"},
    {"Sync.BinaryOutput.shortName", "Binary output", "Дискр. выход"},
    {"Sync.BinaryOutput.info",
     "The first device of the configuration starts the others by a binary output.\n\n"
     "Wire binary output 1 of the first device to binary input 8 of every other one. The others start up to "
     "200 microseconds after the first; afterwards each one runs on its own clock and departs from the "
     "others "
     "by up to 5 microseconds in every second.",
     "Первое устройство конфигурации запускает остальные своим дискретным выходом.\n\n"
     "Подключите дискретный выход 1 первого устройства к дискретному входу 8 каждого из остальных. Остальные "
     "запускаются не позднее чем через 200 мкс после первого; далее каждое устройство работает по своим "
     "часам "
     "и расходится с другими не более чем на 5 мкс за секунду."},
    {"Sync.Cable.name", "Synchronisation cable", "Кабель синхронизации"},
    {"Sync.Cable.shortName", "Cable", "Кабель"},
    {"Sync.Cable.info",
     "The first device of the configuration passes its clock on to the others by cable.\n\n"
     "Connect the devices in a chain, from the socket “Sync out” of each one to “Sync in” of the next, "
     "in "
     "the order of the configuration. Up to 10 metres of cable in all keep the devices within 1 microsecond.",
     "Первое устройство конфигурации передаёт свои часы остальным по кабелю.\n\n"
     "Соедините устройства цепочкой в порядке конфигурации: разъём «Sync out» каждого с разъёмом "
     "«Sync in» следующего. При общей длине кабеля до 10 метров расхождение не более 1 мкс."},
    {"Sync.GPS.name", "GPS", "GPS"},
    {"Sync.GPS.shortName", "GPS", "GPS"},
    {"Sync.GPS.info",
     "Every device takes the time from a satellite receiver of its own, so the devices may stand in "
     "different "
     "places.\n\n"
     "The aerials need a free view of the sky. After switching on it may take up to 15 minutes until the "
     "time "
     "is valid. The devices agree within 1 microsecond.",
     "Каждое устройство получает время от собственного спутникового приёмника, поэтому устройства могут "
     "находиться в разных местах.\n\n"
     "Антеннам нужен открытый обзор неба. После включения время становится достоверным не позднее чем через "
     "15 минут. Расхождение не более 1 мкс."},
    {"Sync.PTP.name", "PTP (IEEE 1588)", "PTP (IEEE 1588)"},
    {"Sync.PTP.shortName", "PTP", "PTP"},
    {"Sync.PTP.info",
     "Every device takes the time from a clock in the network.\n\n"
     "The network needs a grandmaster clock, and switches that support PTP on the whole way to the devices. "
     "The devices then agree within 1 microsecond; with ordinary switches the error may be a hundred times "
     "greater.",
     "Каждое устройство получает время от часов в сети.\n\n"
     "В сети нужны ведущие часы и коммутаторы с поддержкой PTP на всём пути до устройств. Тогда расхождение "
     "не "
     "более 1 мкс; с обычными коммутаторами погрешность может быть в сто раз больше."},
};

constexpr Kes::TextTable table("HardwareManager", texts);

} // namespace

const char* HardwareManager::get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng
