#pragma once

#include <KesDriver/KesAvary.h>

#include <chrono>
#include <optional>
#include <string>

namespace KesDevice {

/// The fault of a device that the user knows of. A device repeats its record about every second while the
/// fault lasts; it is reported to the user once. Not synchronised.
class KnownFault {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// Nothing is known: the device is well, or has been connected again.
    void clear() { *this = {}; }
    /// Whether the device has reported it by itself.
    bool hasRecord() const { return _record.has_value(); }
    /// The result of an operation reports a fault, with this description, whose record has not come yet.
    void expectRecord(const std::string& description, Time now)
    {
        _expected = description;
        _heardAt = now;
    }
    /// Takes the record; true when the user does not know of it.
    bool isNews(const KesDriver::KesAvary& record, Time now);

private:
    std::optional<KesDriver::KesAvary> _record;
    std::optional<std::string> _expected;
    Time _heardAt;
};

} // namespace KesDevice
