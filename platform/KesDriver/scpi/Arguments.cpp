#include <KesDriver/scpi/Arguments.h>

#include <KesDriver/scpi/Error.h>
#include <KesDriver/scpi/Text.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <utility>

namespace KesDriver::Scpi {

namespace {

struct Unit {
    const char* name;
    Quantity quantity;
    double factor;
};

constexpr Unit units[] = {
    {"A", Quantity::Current, 1.0},      {"MA", Quantity::Current, 1e-3},  {"KA", Quantity::Current, 1e3},
    {"V", Quantity::Voltage, 1.0},      {"MV", Quantity::Voltage, 1e-3},  {"KV", Quantity::Voltage, 1e3},
    {"HZ", Quantity::Frequency, 1.0},   {"KHZ", Quantity::Frequency, 1e3}, {"S", Quantity::Time, 1.0},
    {"MS", Quantity::Time, 1e-3},       {"US", Quantity::Time, 1e-6},     {"DEG", Quantity::Angle, 1.0},
    {"OHM", Quantity::Resistance, 1.0},
};

double toBase(const Parameter& parameter, Quantity quantity)
{
    if (parameter.unit.empty())
        return parameter.value;
    if (quantity == Quantity::None)
        throw Error(ErrorCode::SuffixNotAllowed, parameter.unit);
    const auto found = std::find_if(std::begin(units), std::end(units), [&](const auto& unit) {
        return unit.name == parameter.unit && unit.quantity == quantity;
    });
    if (found == std::end(units))
        throw Error(ErrorCode::InvalidSuffix, parameter.unit);
    // A thousandth is divided by a thousand, so that "1.1 ms" is the number 0.0011.
    return found->factor < 1.0 ? parameter.value / std::round(1.0 / found->factor)
                               : parameter.value * found->factor;
}

unsigned readChannel(std::string_view text, unsigned most)
{
    unsigned channel = 0;
    const auto trimmed = trim(text);
    const auto [end, error] = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), channel);
    if (trimmed.empty() || error == std::errc::invalid_argument || end != trimmed.data() + trimmed.size())
        throw Error(ErrorCode::InvalidExpression, std::string(trimmed));
    if (error != std::errc() || channel < 1 || channel > most)
        throw Error(ErrorCode::OutOfRange, "(@" + std::string(trimmed) + ")");
    return channel;
}

} // namespace

Parameter Arguments::_take(Parameter::Kind kind)
{
    if (!hasMore())
        throw Error(ErrorCode::MissingParameter);
    if (_parameters[_next].kind != kind)
        throw Error(ErrorCode::DataType);
    return std::move(_parameters[_next++]);
}

bool Arguments::isWordNext() const
{
    return hasMore() && _parameters[_next].kind == Parameter::Kind::Word;
}

double Arguments::readNumber(Quantity quantity)
{
    return toBase(_take(Parameter::Kind::Number), quantity);
}

long long Arguments::readInteger(long long least, long long most)
{
    const double value = readNumber();
    if (value < static_cast<double>(least) || value > static_cast<double>(most))
        throw Error(ErrorCode::OutOfRange);
    if (value != std::floor(value))
        throw Error(ErrorCode::NumericData, "a whole number is expected");
    return static_cast<long long>(value);
}

bool Arguments::readBoolean()
{
    if (!isWordNext())
        return readInteger(0, 1) != 0;
    return readChoice({"OFF", "ON"}) != 0;
}

std::string Arguments::readText()
{
    return _take(Parameter::Kind::Text).text;
}

std::string Arguments::readWord()
{
    return _take(Parameter::Kind::Word).text;
}

std::string Arguments::readToken()
{
    return isWordNext() ? readWord() : _take(Parameter::Kind::Number).text;
}

std::size_t Arguments::readChoice(std::initializer_list<std::string_view> words)
{
    const auto given = readWord();
    const auto* const found = std::find_if(words.begin(), words.end(), [&](std::string_view word) {
        return Mnemonic(word).matches(given);
    });
    if (found == words.end())
        throw Error(ErrorCode::IllegalParameter, given);
    return static_cast<std::size_t>(found - words.begin());
}

std::vector<unsigned> Arguments::readChannels(unsigned most)
{
    const auto text = _take(Parameter::Kind::List).text;
    std::vector<unsigned> channels;
    for (std::size_t begin = 0; begin <= text.size();) {
        const auto end = std::min(text.find(',', begin), text.size());
        const auto part = std::string_view(text).substr(begin, end - begin);
        const auto colon = part.find(':');
        const auto first = readChannel(part.substr(0, colon), most);
        const auto last = colon == part.npos ? first : readChannel(part.substr(colon + 1), most);
        for (unsigned channel = first; channel <= last; ++channel)
            if (std::find(channels.begin(), channels.end(), channel) == channels.end())
                channels.push_back(channel);
        begin = end + 1;
    }
    return channels;
}

std::string Arguments::readBlock()
{
    return _take(Parameter::Kind::Block).text;
}

void Arguments::end() const
{
    if (hasMore())
        throw Error(ErrorCode::ParameterNotAllowed);
}

} // namespace KesDriver::Scpi
