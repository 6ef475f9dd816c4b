#pragma once

#include <KesCommon/Export.h>
#include <KesDriver/IKestoLink.h>
#include <KesDriver/Outputs.h>
#include <KesDriver/Report.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

/// The values of the driver as the network protocol writes them (docs/protocol.md), without line ends. What
/// is written reads back the same, whatever the locale, for all values that are finite. Reading is strict:
/// nothing for a number that is not finite, for fields too many or too few and for any other word; it does
/// not check what a device can put out. It throws nothing but std::bad_alloc. Any thread.
namespace KesDriver::ValueText {

inline constexpr std::size_t stateNumbers = 15;
inline constexpr std::size_t rampNumbers = 14;

KES_EXPORT std::string write(const OutputState& outputs);
KES_EXPORT std::optional<OutputState> readOutputs(std::string_view text);
/// From numbers in the order of the text.
KES_EXPORT std::optional<OutputState> toOutputs(std::span<const double> numbers);
KES_EXPORT std::optional<OutputRamp> toRamp(std::span<const double> numbers);

/// In seconds.
KES_EXPORT std::string write(DeviceTime time);
/// Nothing for more than a thousand years.
KES_EXPORT std::optional<DeviceTime> toTime(double seconds);
KES_EXPORT std::optional<DeviceTime> readSeconds(std::string_view text);
/// A whole number of microseconds, from 0 on when it must not be negative.
KES_EXPORT std::optional<std::int64_t> readMicroseconds(std::string_view text, bool isSigned = false);

/// What stands behind the headers STEP, RAMP, END and ANGLE. A step without a ramp, an end condition or an
/// angle has no such line.
KES_EXPORT std::string writeStep(const OutputStep& step);
KES_EXPORT std::string write(const OutputRamp& ramp);
KES_EXPORT std::string write(const EndCondition& condition);
KES_EXPORT std::optional<OutputStep> readStep(std::string_view parameters);
KES_EXPORT std::optional<OutputRamp> readRamp(std::string_view parameters);
KES_EXPORT std::optional<EndCondition> readEnd(std::string_view parameters);
/// Such as "1C" or "2OE".
KES_EXPORT std::optional<InputCondition> readCondition(std::string_view text);

/// What could be read of the lines of a sequence.
struct SequenceReading {
    OutputSequence sequence;
    /// The first line, counted from 1, that makes no sense; 0 when there is none.
    std::size_t wrongLine = 0;
    /// More steps than asked for.
    bool isTooLong = false;

    bool isGood() const { return wrongLine == 0 && !isTooLong; }
};

/// A line for each STEP, RAMP, END and ANGLE, each with its line end: what `SEQuence:DATA` takes as a block.
KES_EXPORT std::string write(const OutputSequence& sequence);
/// The same in parts of about that many bytes, each of which begins with a STEP.
KES_EXPORT std::vector<std::string> writeInParts(const OutputSequence& sequence, std::size_t bytes);
/// Empty lines count for nothing, "\r\n" is a line end.
KES_EXPORT SequenceReading readSequence(std::string_view lines, std::size_t mostSteps);

KES_EXPORT std::string write(const OutputLimits& limits);
KES_EXPORT std::optional<OutputLimits> readLimits(std::string_view text);

/// Where a device is with its sequence.
enum class Stage { Idle, Armed, Running };

/// The answer to `SYSTem:STATe?`. The state's error stays empty: it is not part of that answer.
struct KES_EXPORT DeviceStatus {
    KestoState state;
    bool isWorking = false;
    Stage stage = Stage::Idle;

    bool operator==(const DeviceStatus& other) const;
};

KES_EXPORT std::string write(const DeviceStatus& status);
KES_EXPORT std::optional<DeviceStatus> readStatus(std::string_view text);

/// The controller was lost or has given control back, and everything is off.
struct ReleaseRecord {
    std::string reason;

    bool operator==(const ReleaseRecord&) const = default;
};

/// An event as a device remembers and sends it. The times in the event and in the record are the same; a
/// fault record names no device, because the link knows it.
struct EventRecord {
    using Content = std::variant<InputEvent, StepEvent, SequenceEvent, KesAvary, ReleaseRecord>;

    std::uint64_t number = 0;
    DeviceTime time{0};
    Content content;

    bool operator==(const EventRecord&) const = default;
};

/// Without the "!" of a line.
KES_EXPORT std::string write(const EventRecord& record);
/// Nothing for the number 0 either.
KES_EXPORT std::optional<EventRecord> readEvent(std::string_view text);

/// What `SYSTem:FAULt?` gives: the part of a fault record behind its kind.
KES_EXPORT std::string writeFaults(const KesAvary& avary);
KES_EXPORT std::optional<KesAvary> readFaults(std::string_view text);

/// What `*IDN?` gives, which does not hold the day of calibration.
KES_EXPORT std::string writeIdentity(const KestoIdentity& identity);
KES_EXPORT std::optional<KestoIdentity> readIdentity(std::string_view text);

} // namespace KesDriver::ValueText
