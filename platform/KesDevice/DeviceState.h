#pragma once

#include <KesCommon/Export.h>

namespace KesDevice {

/// The state of a device in its configuration. A value.
enum class DeviceState {
    /// Not connected: never tried, disconnected on purpose, or the attempt failed.
    Absent,
    /// An attempt to connect is under way; nothing may be asked of the device yet.
    Connecting,
    /// Connected, identified, supplied as set, and ready for operation; the outputs are off.
    Ready,
    /// The amplifiers are on.
    Working,
    /// Connected with a fault or not ready, or disconnected because it sent nonsense or did not obey. Its
    /// outputs are off, or its own watchdog switches them off.
    Faulty,
    /// The connection was lost, or an answer came too late; the device switches everything off by itself.
    Lost
};

/// Whether a device may pass from the one state to the other; docs/devices.md says when it does. Every other
/// change is a defect of this library: it is written to the log, counted and not made.
KES_EXPORT bool isTransition(DeviceState from, DeviceState to);

/// How many changes outside the table were asked for since the process began. Any thread.
KES_EXPORT unsigned countTransitionDefects();

} // namespace KesDevice
