#include <KesDriver/scpi/Error.h>

#include <KesDriver/net/FieldText.h>
#include <KesDriver/scpi/Text.h>

#include <algorithm>
#include <iterator>

namespace KesDriver::Scpi {

namespace {

struct Entry {
    ErrorCode code;
    const char* text;
};

constexpr Entry texts[] = {
    {ErrorCode::None, "No error"},
    {ErrorCode::InvalidCharacter, "Invalid character"},
    {ErrorCode::SyntaxError, "Syntax error"},
    {ErrorCode::DataType, "Data type error"},
    {ErrorCode::ParameterNotAllowed, "Parameter not allowed"},
    {ErrorCode::MissingParameter, "Missing parameter"},
    {ErrorCode::UndefinedHeader, "Undefined header"},
    {ErrorCode::HeaderSuffixOutOfRange, "Header suffix out of range"},
    {ErrorCode::NumericData, "Numeric data error"},
    {ErrorCode::InvalidCharacterInNumber, "Invalid character in number"},
    {ErrorCode::ExponentTooLarge, "Exponent too large"},
    {ErrorCode::InvalidSuffix, "Invalid suffix"},
    {ErrorCode::SuffixNotAllowed, "Suffix not allowed"},
    {ErrorCode::InvalidString, "Invalid string data"},
    {ErrorCode::InvalidBlock, "Invalid block data"},
    {ErrorCode::InvalidExpression, "Invalid expression"},
    {ErrorCode::CommandProtected, "Command protected"},
    {ErrorCode::SettingsConflict, "Settings conflict"},
    {ErrorCode::OutOfRange, "Data out of range"},
    {ErrorCode::TooMuchData, "Too much data"},
    {ErrorCode::IllegalParameter, "Illegal parameter value"},
    {ErrorCode::CorruptOrStale, "Data corrupt or stale"},
    {ErrorCode::QueueOverflow, "Queue overflow"},
    {ErrorCode::AnswerTooLong, "Query UNTERMINATED after indefinite response"},
};

/// SCPI allows 255 characters.
constexpr std::size_t longestText = 255;

std::string compose(ErrorCode code, const std::string& detail)
{
    std::string text = getStandardText(code);
    if (!detail.empty())
        text += ';' + detail;
    return cut(std::move(text), longestText);
}

} // namespace

const char* getStandardText(ErrorCode code)
{
    const auto found = std::find_if(std::begin(texts), std::end(texts),
                                    [code](const Entry& entry) { return entry.code == code; });
    return found == std::end(texts) ? "Device error" : found->text;
}

Error::Error(ErrorCode code, const std::string& detail)
    : std::runtime_error(compose(code, detail)), _code(code)
{}

Error::~Error() = default;

std::string Error::toAnswer() const
{
    return std::to_string(static_cast<int>(_code)) + ',' + FieldText::quote(what());
}

} // namespace KesDriver::Scpi
