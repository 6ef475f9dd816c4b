#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesDevice/HardwareManager.h>

#include <memory>
#include <string>

namespace KesDevice {

/// The file in which a hardware configuration is kept: addresses and auxiliary supplies of the devices, the
/// synchronisation mode, the settings. A key file with one group "Hardware" and groups "Kesto 1", "Kesto 2",
/// ... Any thread.
class KES_EXPORT HardwareFile {
public:
    /// "hardware.cfg" in the configuration directory of the family's programs.
    static std::string getPath();

    /// Replaces the file as a whole or, after a failure, not at all. Creates missing folders.
    static Kes::Result write(const std::string& path, const HardwareManager& hardware);

    /// Null when the file cannot be read, is damaged or makes no sense; the error then says why.
    /// A file that does not exist gives null without an error.
    static std::unique_ptr<HardwareManager> read(const std::string& path, std::string& error);
};

} // namespace KesDevice
