#include <KesDriver/scpi/Unit.h>

#include <KesDriver/scpi/Error.h>
#include <KesDriver/scpi/Text.h>
#include <KesDriver/scpi/detail/Token.h>

#include <algorithm>

namespace KesDriver::Scpi {

namespace {

bool isHeaderCharacter(char c)
{
    return isLetter(c) || isDigit(c) || c == '_' || c == ':';
}

/// Nodes that begin with a letter, with single colons between them.
bool isPath(std::string_view path)
{
    char before = ':';
    for (const char c : path) {
        if (before == ':' && !isLetter(c))
            return false;
        before = c;
    }
    return !path.empty() && before != ':';
}

std::vector<Parameter> readParameters(std::string_view text)
{
    std::vector<Parameter> parameters;
    if (trimFront(text).empty())
        return parameters;
    for (bool isMore = true; isMore;) {
        text = trimFront(text);
        const auto length = findOutside(text, ',');
        parameters.push_back(Parameter::parse(text.substr(0, length)));
        isMore = length < text.size();
        text.remove_prefix(isMore ? length + 1 : length);
    }
    return parameters;
}

} // namespace

bool UnitReader::next(Unit& unit)
{
    std::string_view text;
    while (text.empty()) {
        if (_rest.empty())
            return false;
        text = trimFront(_takeUnit());
    }
    const auto headerLength =
        static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isBlank) - text.begin());
    _readHeader(text.substr(0, headerLength), unit);
    unit.parameters = readParameters(text.substr(headerLength));
    return true;
}

std::string_view UnitReader::_takeUnit()
{
    const auto length = findOutside(_rest, ';');
    const auto unit = _rest.substr(0, length);
    _rest.remove_prefix(std::min(length + 1, _rest.size()));
    return unit;
}

void UnitReader::_readHeader(std::string_view text, Unit& unit)
{
    unit.isQuery = text.back() == '?';
    auto name = text;
    if (unit.isQuery)
        name.remove_suffix(1);
    const bool isCommon = !name.empty() && name.front() == '*';
    const bool isFromRoot = !name.empty() && name.front() == ':';
    auto path = name;
    if (isCommon || isFromRoot)
        path.remove_prefix(1);
    if (!std::all_of(path.begin(), path.end(), isHeaderCharacter))
        throw Error(ErrorCode::InvalidCharacter, std::string(text));
    if (!isPath(path) || (isCommon && path.find(':') != path.npos))
        throw Error(ErrorCode::SyntaxError, std::string(text));
    const auto upper = toUpper(path);
    if (isCommon) {
        unit.header = '*' + upper;
        return;
    }
    unit.header = isFromRoot ? upper : _level + upper;
    _level = unit.header.substr(0, unit.header.rfind(':') + 1);
}

} // namespace KesDriver::Scpi
