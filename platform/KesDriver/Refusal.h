#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/ObjectError.h>
#include <KesCommon/Result.h>

#include <optional>
#include <string>

namespace KesDriver {

/// Why a device that answers refuses what it is asked for; the numbers are those of the network protocol.
enum class RefusalCode : int {
    /// This program has no control of the device.
    CommandProtected = -203,
    SettingsConflict = -221,
    OutOfRange = -222,
    TooManySteps = -223,
    /// The device has a fault.
    Fault = 101,
    /// It is not in working mode.
    OutputsOff = 102,
    /// Not while a sequence runs.
    SequenceRuns = 103,
    /// Not while a sequence is armed.
    SequenceWaits = 104,
    /// No sequence is armed.
    NothingWaits = 105,
    /// The moment of the start has passed.
    StartPassed = 106,
};

/// A refusal by a device that answers, as a text for the user and as a code. A value, as every error is; any
/// thread.
class KES_EXPORT Refusal : public Kes::TextError {
public:
    Refusal(RefusalCode code, std::string text);
    ~Refusal() override;

    RefusalCode getCode() const { return _code; }

    static Kes::Result failure(RefusalCode code, std::string text);

private:
    RefusalCode _code;
};

/// None for success and for every failure without a code.
KES_EXPORT std::optional<RefusalCode> getRefusalCode(const Kes::Result& result);

} // namespace KesDriver
