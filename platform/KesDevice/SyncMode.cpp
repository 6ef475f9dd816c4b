#include <KesDevice/SyncMode.h>

#include <KesDevice/HardwareManagerText.h>

#include <array>
#include <cstddef>
#include <string>

namespace KesDevice {

namespace {

constexpr std::array<const char*, SyncModeCount> identifiers = {
    "None", "PowerNetwork", "ExternalStart", "BinaryOutput", "Cable", "GPS", "PTP"};

const char* text(const SyncMode& mode, const char* what)
{
    return lng::HardwareManager::get(std::string("Sync.") + mode.getIdentifier() + '.' + what);
}

} // namespace

const SyncMode& SyncMode::get(SyncModeKind kind)
{
    static constexpr std::array<SyncMode, SyncModeCount> modes = {SyncMode(SyncModeKind::None),
                                                                  SyncMode(SyncModeKind::PowerNetwork),
                                                                  SyncMode(SyncModeKind::ExternalStart),
                                                                  SyncMode(SyncModeKind::BinaryOutput),
                                                                  SyncMode(SyncModeKind::Cable),
                                                                  SyncMode(SyncModeKind::GPS),
                                                                  SyncMode(SyncModeKind::PTP)};
    return modes[static_cast<std::size_t>(kind)];
}

std::optional<SyncModeKind> SyncMode::find(const std::string& identifier)
{
    for (std::size_t i = 0; i < identifiers.size(); ++i)
        if (identifier == identifiers[i])
            return static_cast<SyncModeKind>(i);
    return std::nullopt;
}

const char* SyncMode::getIdentifier() const
{
    return identifiers[static_cast<std::size_t>(_kind)];
}

const char* SyncMode::getName() const
{
    return text(*this, "name");
}

const char* SyncMode::getShortName() const
{
    return text(*this, "shortName");
}

const char* SyncMode::getInfo() const
{
    return _kind == SyncModeKind::None ? nullptr : text(*this, "info");
}

bool SyncMode::isSeqSupported() const
{
    return _kind != SyncModeKind::PowerNetwork;
}

bool SyncMode::hasCommonClock() const
{
    return _kind == SyncModeKind::Cable || _kind == SyncModeKind::GPS || _kind == SyncModeKind::PTP;
}

std::chrono::microseconds SyncMode::getUncertainty() const
{
    if (hasCommonClock())
        return std::chrono::microseconds(1);
    if (_kind == SyncModeKind::ExternalStart)
        return std::chrono::microseconds(100);
    return std::chrono::microseconds(_kind == SyncModeKind::BinaryOutput ? 200 : 0);
}

} // namespace KesDevice
