#include <Simulator/SimulatorText.h>

#include <KesCommon/TextTable.h>

namespace lng::Simulator {

namespace {

constexpr lng::Text texts[] = {
    {"summary", "Simulated test devices that programs reach over the network (docs/protocol.md).",
     "Имитируемые испытательные устройства, доступные программам по сети (docs/protocol.md)."},
    {"listen", "Where the first device listens; by default 127.0.1.1:5025, port 0 is a free one",
     "Где принимает соединения первое устройство; по умолчанию 127.0.1.1:5025, порт 0 — любой свободный"},
    {"listen.value", "ADDRESS[:PORT]", "АДРЕС[:ПОРТ]"},
    {"devices", "Number of devices, each at the next address",
     "Число устройств, каждое по следующему адресу"},
    {"type", "Type of the devices, such as 3 for KESTO-3", "Тип устройств, например 3 для КЕСТО-3"},
    {"serial", "Serial number of the first device", "Заводской номер первого устройства"},
    {"speed", "Device seconds per real second", "Секунд устройства за одну настоящую секунду"},
    {"wire",
     "A relay at each device, such as overcurrent:pickup=1.2,tms=0.1 or voltage-frequency:U<=80,rate=0",
     "Реле у каждого устройства, например overcurrent:pickup=1.2,tms=0.1 или voltage-frequency:U<=80,rate=0"},
    {"wire.value", "KIND[:SETTINGS]", "ВИД[:УСТАВКИ]"},
    {"announce", "Announce the devices in the local network (DNS-SD), so that searches find them",
     "Объявить устройства в локальной сети (DNS-SD), чтобы их находил поиск"},
    {"log", "Write what is received and answered to standard error",
     "Выводить в стандартный поток ошибок принятое и отвеченное"},
    {"version", "Show the version of the program", "Показать версию программы"},
    {"number.value", "N", "N"},
    {"error.value", "--%s: “%s” is not possible.", "--%s: недопустимое значение «%s»."},
    {"error.range", "--%s: “%s” is not possible; possible: %s to %s.",
     "--%s: недопустимое значение «%s»; допустимо от %s до %s."},
    {"error.argument", "“%s” is not an option. All options: --help",
     "«%s» не является параметром. Все параметры: --help"},
    {"warning.open", "Warning: %s can be reached from other computers, and the protocol knows no passwords.",
     "Внимание: %s доступен с других компьютеров, а протокол не знает паролей."},
};

constexpr Kes::TextTable table("Simulator", texts);

} // namespace

const char* get(const std::string& key)
{
    return table.get(key);
}

} // namespace lng::Simulator
