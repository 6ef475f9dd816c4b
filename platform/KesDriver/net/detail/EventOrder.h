#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/net/ValueText.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace KesDriver {

/// Sees to it that the events of one connection come without a gap, once each and in the order of the
/// device's clock. After a gap it asks once for what is missing, and holds back what follows. Not
/// synchronised.
class KES_EXPORT EventOrder {
public:
    using Record = ValueText::EventRecord;
    struct Gap {
        std::uint64_t from = 0;
        std::uint64_t count = 0;
    };

    /// The number of the last event before the first one of interest.
    void begin(std::uint64_t last) { _next = last + 1; }

    /// An event as it has come, without the "!". Returns what is due now.
    std::vector<Record> take(std::string_view text);
    /// What the device remembers of the gap, as the answer gives it.
    std::vector<Record> fill(std::string_view events);

    /// The number of the last one that has been due.
    std::uint64_t getLast() const { return _next - 1; }

    /// Whether something has to be asked for, and what; it is given once.
    bool hasGap() const { return _gap && !_isBroken; }
    Gap takeGap();

    /// Whether there is no order any more. Nothing is due from then on.
    bool isBroken() const { return _isBroken; }
    void setBroken() { _isBroken = true; }

private:
    void _accept(std::optional<Record> record, std::vector<Record>& due);
    void _hold(Record record);

    std::uint64_t _next = 1;
    DeviceTime _lastTime{0};
    std::vector<Record> _held;
    std::optional<Gap> _gap;
    bool _isBroken = false;
};

} // namespace KesDriver
