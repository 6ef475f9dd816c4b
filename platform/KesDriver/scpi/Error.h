#pragma once

#include <KesCommon/Export.h>

#include <stdexcept>
#include <string>
#include <string_view>

/// SCPI-1999 and IEEE 488.2 as an instrument needs them, without any instrument: messages, headers,
/// parameters, errors, registers. Not synchronised unless a header says otherwise.
namespace KesDriver::Scpi {

/// The codes of SCPI-1999 that are in use here; a device's own are above zero.
enum class ErrorCode : int {
    None = 0,
    /// -1xx, command errors: the message itself is wrong.
    InvalidCharacter = -101,
    SyntaxError = -102,
    DataType = -104,
    ParameterNotAllowed = -108,
    MissingParameter = -109,
    UndefinedHeader = -113,
    HeaderSuffixOutOfRange = -114,
    NumericData = -120,
    InvalidCharacterInNumber = -121,
    ExponentTooLarge = -123,
    InvalidSuffix = -131,
    SuffixNotAllowed = -138,
    InvalidString = -151,
    InvalidBlock = -161,
    InvalidExpression = -171,
    /// -2xx, execution errors: what it asks for cannot be done, or not now.
    CommandProtected = -203,
    SettingsConflict = -221,
    OutOfRange = -222,
    TooMuchData = -223,
    IllegalParameter = -224,
    CorruptOrStale = -230,
    /// -3xx, errors of the instrument: further ones have been lost.
    QueueOverflow = -350,
    /// -4xx, query errors: the answers to one message would be too long together.
    AnswerTooLong = -440,
};

/// The standard's words for a code, in English whatever the language of the process; "Device error" for a
/// device's own code and any other that is not listed.
KES_EXPORT const char* getStandardText(ErrorCode code);

/// What is wrong with a message unit, or with what it asks for. Thrown by whatever reads or carries out a
/// unit, and caught where units are carried out one after the other.
class KES_EXPORT Error : public std::runtime_error {
public:
    /// The detail stands behind the standard's words, after a semicolon; empty for none. Both together,
    /// which `what` gives, are cut to the 255 bytes that SCPI allows.
    explicit Error(ErrorCode code, const std::string& detail = {});
    ~Error() override;

    /// Below zero by the standard, above it a device's own.
    ErrorCode getCode() const { return _code; }
    /// As the error queue answers: `-222,"Data out of range;IA: 40 A ..."`.
    std::string toAnswer() const;

private:
    ErrorCode _code;
};

} // namespace KesDriver::Scpi
