#include <KesDevice/detail/HardwareFile.h>

#include <KesCommon/Directories.h>
#include <KesCommon/FileSystem.h>

#include <glibmm/convert.h>
#include <glibmm/fileutils.h>
#include <glibmm/keyfile.h>
#include <glibmm/miscutils.h>

#include <stdexcept>
#include <utility>

namespace KesDevice {

namespace {

constexpr const char* hardwareGroup = "Hardware";
constexpr int fileVersion = 1;
constexpr int mostKestos = 1000;

Glib::ustring kestoGroup(int number)
{
    return "Kesto " + std::to_string(number);
}

void writeKestos(Glib::KeyFile& file, const HardwareManager& hardware)
{
    int number = 0;
    for (const auto& kesto : hardware.getKestos().lease()) {
        const auto group = kestoGroup(++number);
        file.set_string(group, "Address", kesto->getAddress().to_string());
        file.set_boolean(group, "AuxDC", kesto->auxDC().getEnable());
        file.set_double(group, "AuxDCVolts", kesto->auxDC().getVolts());
    }
    file.set_integer(hardwareGroup, "Kestos", number);
}

std::runtime_error unusable(const Glib::ustring& group, const char* key)
{
    return std::runtime_error("[" + group.raw() + "] " + key);
}

void check(bool condition, const Glib::ustring& group, const char* key)
{
    if (!condition)
        throw unusable(group, key);
}

void readKesto(const Glib::KeyFile& file, const Glib::ustring& group, HardwareManager& hardware)
{
    const auto address = Kesto::Address::parse(file.get_string(group, "Address"));
    check(address.has_value(), group, "Address");
    check(hardware.addKesto(*address), group, "Address");
    check(hardware.getKestos().find(*address)->auxDC().set(file.get_boolean(group, "AuxDC"),
                                                           file.get_double(group, "AuxDCVolts")),
          group, "AuxDCVolts");
}

std::unique_ptr<HardwareManager> readHardware(const Glib::KeyFile& file)
{
    check(file.get_integer(hardwareGroup, "Version") == fileVersion, hardwareGroup, "Version");
    auto hardware = HardwareManager::create();
    const auto mode = SyncMode::find(file.get_string(hardwareGroup, "SyncMode"));
    check(mode.has_value(), hardwareGroup, "SyncMode");
    hardware->getSyncManager().setActiveMode(*mode);
    hardware->getVirtualChannels().setIsControlGroupsEnabled(
        file.get_boolean(hardwareGroup, "ControlGroups"));
    hardware->setIsStopOnFault(file.get_boolean(hardwareGroup, "StopOnFault"));
    hardware->setIsStatusReported(file.get_boolean(hardwareGroup, "StatusReported"));
    const int count = file.get_integer(hardwareGroup, "Kestos");
    check(count >= 0 && count <= mostKestos, hardwareGroup, "Kestos");
    for (int number = 1; number <= count; ++number)
        readKesto(file, kestoGroup(number), *hardware);
    return hardware;
}

} // namespace

std::string HardwareFile::getPath()
{
    return Kes::getKesCrossAppConfigDir() + "hardware.cfg";
}

Kes::Result HardwareFile::write(const std::string& path, const HardwareManager& hardware)
{
    Glib::KeyFile file;
    file.set_integer(hardwareGroup, "Version", fileVersion);
    file.set_string(hardwareGroup, "SyncMode", hardware.getSyncManager().getActiveMode().getIdentifier());
    file.set_boolean(hardwareGroup, "ControlGroups", hardware.getVirtualChannels().isControlGroupsEnabled());
    file.set_boolean(hardwareGroup, "StopOnFault", hardware.isStopOnFault());
    file.set_boolean(hardwareGroup, "StatusReported", hardware.isStatusReported());
    writeKestos(file, hardware);
    (void)Kes::mkdir_with_parents(Glib::path_get_dirname(path));
    return Kes::writeWholeFile(path, file.to_data().raw());
}

std::unique_ptr<HardwareManager> HardwareFile::read(const std::string& path, std::string& error)
{
    error.clear();
    if (!Kes::fileExist(path))
        return nullptr;
    try {
        Glib::KeyFile file;
        file.load_from_file(path);
        return readHardware(file);
    } catch (const Glib::Error& problem) {
        error = path + ": " + problem.what().raw();
    } catch (const std::exception& problem) {
        error = path + ": " + problem.what();
    }
    return nullptr;
}

} // namespace KesDevice
