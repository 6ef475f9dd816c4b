#include <KesDriver/scpi/Parameter.h>

#include <KesDriver/scpi/Block.h>
#include <KesDriver/scpi/Error.h>
#include <KesDriver/scpi/Text.h>

#include <algorithm>
#include <charconv>

namespace KesDriver::Scpi {

namespace {

[[noreturn]] void fail(ErrorCode code, std::string_view text)
{
    constexpr std::size_t longestQuotation = 40;
    throw Error(code, cut(std::string(text), longestQuotation));
}

Parameter parseText(std::string_view text)
{
    const char quote = text.front();
    Parameter parameter{Parameter::Kind::Text, {}, 0.0, {}};
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] != quote) {
            parameter.text += text[i];
        } else if (i + 1 < text.size() && text[i + 1] == quote) {
            parameter.text += quote;
            ++i;
        } else if (trim(text.substr(i + 1)).empty()) {
            return parameter;
        } else {
            break;
        }
    }
    fail(ErrorCode::InvalidString, text);
}

Parameter parseBlock(std::string_view text)
{
    BlockHead head;
    if (scanBlock(text, head) != BlockScan::Complete || text.size() - head.headLength < head.length)
        fail(ErrorCode::InvalidBlock, text);
    const auto bytes = text.substr(head.headLength, head.length);
    if (!trim(text.substr(head.headLength + head.length)).empty())
        fail(ErrorCode::InvalidBlock, text);
    return {Parameter::Kind::Block, std::string(bytes), 0.0, {}};
}

Parameter parseList(std::string_view text)
{
    text = trim(text);
    if (text.size() < 3 || text[1] != '@' || text.back() != ')')
        fail(ErrorCode::InvalidExpression, text);
    return {Parameter::Kind::List, std::string(text.substr(2, text.size() - 3)), 0.0, {}};
}

Parameter parseWord(std::string_view text)
{
    text = trim(text);
    const auto isPart = [](char c) { return isLetter(c) || isDigit(c) || c == '_'; };
    if (!std::all_of(text.begin(), text.end(), isPart))
        fail(ErrorCode::InvalidCharacter, text);
    return {Parameter::Kind::Word, toUpper(text), 0.0, {}};
}

Parameter parseNumber(std::string_view whole)
{
    const auto text = trim(whole);
    auto digits = text;
    if (digits.front() == '+')
        digits.remove_prefix(1);
    const auto first = digits.find_first_not_of('-');
    if (first == digits.npos || first > 1 || !(isDigit(digits[first]) || digits[first] == '.') ||
        (text.front() == '+' && first > 0))
        fail(ErrorCode::InvalidCharacterInNumber, text);
    Parameter parameter{Parameter::Kind::Number, std::string(text), 0.0, {}};
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), parameter.value);
    if (error == std::errc::result_out_of_range)
        fail(ErrorCode::ExponentTooLarge, text);
    if (error != std::errc())
        fail(ErrorCode::NumericData, text);
    const auto rest = static_cast<std::size_t>(digits.data() + digits.size() - end);
    const auto unit = trim(digits.substr(digits.size() - rest));
    if (!std::all_of(unit.begin(), unit.end(), isLetter))
        fail(ErrorCode::InvalidCharacterInNumber, text);
    parameter.unit = toUpper(unit);
    return parameter;
}

} // namespace

Parameter Parameter::parse(std::string_view text)
{
    if (text.empty())
        throw Error(ErrorCode::MissingParameter);
    const char c = text.front();
    if (c == '"' || c == '\'')
        return parseText(text);
    if (c == '#')
        return parseBlock(text);
    if (c == '(')
        return parseList(text);
    if (isLetter(c))
        return parseWord(text);
    if (isDigit(c) || c == '+' || c == '-' || c == '.')
        return parseNumber(text);
    fail(ErrorCode::InvalidCharacter, text);
}

} // namespace KesDriver::Scpi
