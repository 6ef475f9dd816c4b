#pragma once

#include <KesCommon/Export.h>

#include <cstdint>
#include <string>
#include <vector>

namespace KesDriver {

/// What a device reports about one of its output channels in a fault record. A value.
struct KesAvaryChannel {
    /// The channel's display name, such as "IA"; empty when the device does not say.
    std::string name;
    bool isDisconnected = false;
    bool isOverheat = false;
    bool isOverload = false;

    bool operator==(const KesAvaryChannel&) const = default;
};

/// A fault record (in the family's vocabulary an avary), as a device reports it. A value.
struct KesAvary {
    /// Which device, as in `KestoIdentifer`.
    std::uint16_t kestoType = 0;
    std::uint32_t serialNumber = 0;
    /// The device does not answer any more.
    bool isConnectError = false;
    /// The emergency button on the device was pressed.
    bool isQuickShutdown = false;
    /// Those with a fault.
    std::vector<KesAvaryChannel> channels;

    bool operator==(const KesAvary&) const = default;
};

/// The faults on one line, in the language of the process, such as "IA - overload; IB - overheat"; empty for
/// a record without any. A channel without a name is "???". Any thread.
KES_EXPORT std::string describeFaults(const KesAvary& avary);

} // namespace KesDriver
