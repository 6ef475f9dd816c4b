#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/KesAvary.h>
#include <KesDriver/Outputs.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>

namespace KesDriver {

/// A binary input has changed. Times in all events are the device's own clock, in microseconds.
struct InputEvent {
    /// Counts from 1.
    unsigned input = 1;
    bool isClosed = false;
    DeviceTime time{0};
    /// The step of the running sequence in which it happened, counted from 0; none outside a sequence. An
    /// input that ends a step belongs to that step.
    std::optional<std::size_t> step{};

    bool operator==(const InputEvent&) const = default;
};

/// A step of the running sequence has begun, counted from 0.
struct StepEvent {
    std::size_t step = 0;
    DeviceTime time{0};

    bool operator==(const StepEvent&) const = default;
};

/// The sequence has ended and the outputs are zero.
struct SequenceEvent {
    /// All steps have run; false when the sequence was stopped or the device had a fault.
    bool isComplete = false;
    DeviceTime time{0};

    bool operator==(const SequenceEvent&) const = default;
};

/// The device has dropped the connection or does not answer any more; the link is disconnected. A device that
/// has lost its controller switches everything off by itself.
struct ConnectionLost {
    bool operator==(const ConnectionLost&) const = default;
};

/// What a device reports by itself. A value. Any thread.
using Report = std::variant<InputEvent, StepEvent, SequenceEvent, KesAvary, ConnectionLost>;

/// Numbers the connections of one link, from 1; 0 is none. A report that was on its way when its connection
/// ended may arrive in the next one, and is recognised by this.
using ConnectionNumber = std::uint64_t;

/// The receiver of a link's reports.
class KES_EXPORT IReportReceiver {
public:
    virtual ~IReportReceiver();

    /// On the link's own thread, one call at a time, in the order of the device's clock, without any lock.
    /// May call the link.
    virtual void receive(ConnectionNumber connection, const Report& report) = 0;
};

} // namespace KesDriver
