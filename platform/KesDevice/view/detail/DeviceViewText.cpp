#include <KesDevice/view/detail/DeviceViewText.h>

#include <KesCommon/TextTable.h>

namespace lng::DeviceView {

namespace {

constexpr lng::Text texts[] = {
    {"Settings.title", "Setting up KESTO", "Настройка КЕСТО"},
    {"Settings.local", "These devices belong to this program only; the other programs keep theirs.",
     "Эти устройства относятся только к этой программе; другие программы сохраняют свои."},
    {"Settings.ok", "OK", "ОК"},
    {"Settings.cancel", "Cancel", "Отмена"},
    {"Settings.busy", "The devices are in use. Stop the test first.",
     "Устройства заняты. Сначала остановите проверку."},
    {"Settings.wrongValues", "Correct the marked values first.", "Сначала исправьте отмеченные значения."},

    {"Devices.title", "Devices", "Устройства"},
    {"Devices.none", "No devices. Add one by its address, or search the network.",
     "Устройств нет. Добавьте устройство по адресу или найдите его в сети."},
    {"Devices.auxDC", "Auxiliary supply", "Оперативное питание"},
    {"Devices.voltsOf", "Auxiliary supply voltage of %s, V", "Напряжение оперативного питания %s, В"},
    {"Devices.auxDCOf", "Auxiliary supply of %s", "Оперативное питание %s"},
    {"Devices.voltsRange", "%s … %s V", "%s … %s В"},
    {"Devices.notVolts", "“%s” is not a voltage; allowed: %s", "«%s» — не напряжение; допустимо: %s"},
    {"Devices.identify", "Identify", "Опознать"},
    {"Devices.identifyOf", "Identify %s", "Опознать %s"},
    {"Devices.up", "Move %s up", "Переместить %s вверх"},
    {"Devices.down", "Move %s down", "Переместить %s вниз"},
    {"Devices.remove", "Remove %s", "Удалить %s"},

    {"Identity.unknown", "Not identified yet", "Ещё не опознано"},
    {"Identity.asking", "Asking the device…", "Опрос устройства…"},
    {"Identity.simulated", "%s, simulated", "%s, имитатор"},

    {"Add.title", "Add devices", "Добавление устройств"},
    {"Add.address", "Address:", "Адрес:"},
    {"Add.addressName", "Address of the device to add", "Адрес добавляемого устройства"},
    {"Add.add", "Add", "Добавить"},
    {"Add.addFound", "Add %s", "Добавить %s"},
    {"Add.malformed",
     "“%s” is not a network address. Four numbers from 0 to 255 are needed, such as 192.168.1.20.",
     "«%s» — не сетевой адрес. Нужны четыре числа от 0 до 255, например 192.168.1.20."},
    {"Add.noDevice", "%s cannot be the address of a device.", "%s не может быть адресом устройства."},
    {"Add.taken", "%s is in the list already.", "%s уже есть в списке."},
    {"Add.inList", "in the list", "в списке"},
    {"Jobs.refused", "The computer is too busy for this. Try again later.",
     "Компьютер слишком занят. Повторите попытку позже."},

    {"Search.start", "Search", "Поиск"},
    {"Search.running", "Searching the network…", "Поиск в сети…"},
    {"Search.found", "Found in the network:", "Найдено в сети:"},
    {"Search.nothing", "No devices were found in the network.", "В сети устройств не найдено."},

    {"Search.inUse", "in use by %s", "занято: %s"},
    {"Search.tooMany", "There are more devices in the network; only %s are shown.",
     "В сети есть и другие устройства; показаны только %s."},

    {"Sync.title", "Synchronisation", "Синхронизация"},
    {"Sync.mode", "Mode:", "Режим:"},
    {"Sync.modeName", "Synchronisation mode", "Режим синхронизации"},
    {"Sync.info", "About this mode", "Об этом режиме"},
    {"Sync.noSequences", "Devices in this mode cannot run sequences: most tests will not start.",
     "В этом режиме устройства не выполняют последовательности: большинство проверок не запустится."},

    {"Updater.label", "State", "Состояние"},
    {"Updater.tooltip",
     "State\nConnect to the devices and ask for their state every second while no test runs",
     "Состояние\nПодключаться к устройствам и опрашивать их состояние каждую секунду, пока проверка не "
     "выполняется"},
};

constexpr Kes::TextTable table("DeviceView", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::DeviceView
