#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/ObjectError.h>
#include <KesCommon/Result.h>

#include <optional>
#include <string>

namespace KesDriver {

/// Why a device that answers refuses what it is asked for; the numbers are those of the network protocol.
enum class RefusalCode : int {
    CommandProtected = -203,
    SettingsConflict = -221,
    OutOfRange = -222,
    TooManySteps = -223,
    Fault = 101,
    OutputsOff = 102,
    SequenceRuns = 103,
    SequenceWaits = 104,
    NothingWaits = 105,
    StartPassed = 106,
};

/// A refusal by a device that answers, as a text for the user and as a code. A value, as every error is; any thread.
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
