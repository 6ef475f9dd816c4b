#pragma once

#include <KesCommon/Export.h>

#include <chrono>
#include <optional>
#include <string>

namespace KesDevice {

/// The ways in which several devices keep the same time, in their fixed order.
enum class SyncModeKind { None, PowerNetwork, ExternalStart, BinaryOutput, Cable, GPS, PTP };

inline constexpr int SyncModeCount = 7;

/// One synchronisation mode: a constant of the library. Any thread.
class KES_EXPORT SyncMode {
public:
    /// The one object for the kind.
    static const SyncMode& get(SyncModeKind kind);

    /// The kind with this identifier; none for an unknown one.
    static std::optional<SyncModeKind> find(const std::string& identifier);

    SyncModeKind getKind() const { return _kind; }
    /// The fixed identifier, such as "PowerNetwork"; used in files, never shown.
    const char* getIdentifier() const;
    /// The full name in the language of the process; may be null.
    const char* getName() const;
    /// The short name for the status bar; may be null.
    const char* getShortName() const;
    /// What the user has to know about the mode (wiring, accuracy); null when there is nothing to say.
    const char* getInfo() const;
    /// Whether devices in this mode can run sequences. Those that follow the mains cannot: a sequence needs a
    /// common moment of start, and the mains gives the devices only a common phase.
    bool isSeqSupported() const;
    /// Whether the devices share a clock, on which a common moment can be named.
    bool hasCommonClock() const;
    /// By how much the starts of the devices may differ, as the mode is specified with the wiring that its
    /// info asks for; 0 for a single device.
    std::chrono::microseconds getUncertainty() const;

private:
    explicit constexpr SyncMode(SyncModeKind kind) : _kind(kind) {}

    SyncModeKind _kind;
};

} // namespace KesDevice
