#include <KesProgram/text/Conversion.h>

#include <KesCommon/StringHelper.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#include <utility>

namespace Kes {

namespace {

constexpr char separatorOfRectangle = ';';
constexpr int defaultPrecision = 6;

/// Significant digits: four decimals for small values, six digits in all for large ones.
int precisionOf(double value)
{
    // The logarithm of a negative value is not a number and that of an infinite one is infinite: neither may
    // be turned into an integer.
    if (!(value > 0) || std::isinf(value))
        return defaultPrecision;
    const int exponent = static_cast<int>(std::ceil(std::log10(value)));
    return exponent < 0 ? 4 : exponent + std::min(6 - exponent, 4);
}

std::string numberToString(float number)
{
    const double value = number;
    if (std::abs(value) < 0.0001)
        return "0";
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(precisionOf(value));
    stream << value;
    return stream.str();
}

float itemToNumber(const std::string& item)
{
    float value = 0;
    tryConvert<float, true>(item, value);
    return value;
}

} // namespace

template <>
std::string convertToString<RectangleF, true, true>(const RectangleF& value)
{
    std::string text = numberToString(value.x);
    for (const float number : {value.y, value.width, value.height})
        text += separatorOfRectangle + numberToString(number);
    return text;
}

template <>
bool tryConvert<RectangleF, true, true>(const std::string& text, RectangleF& value)
{
    const auto numbers = splitConvert<float>(text, separatorOfRectangle);
    if (numbers.size() != 4)
        return false;
    value = RectangleF{numbers[0], numbers[1], numbers[2], numbers[3]};
    return true;
}

template <>
std::vector<float> splitConvert<float>(const std::string& text, char separator)
{
    if (text.empty())
        return {0};
    std::vector<float> numbers;
    std::istringstream stream(text);
    for (std::string item; std::getline(stream, item, separator);)
        numbers.push_back(itemToNumber(item));
    if (text.back() == separator)
        numbers.push_back(0);
    return numbers;
}

template <>
bool tryConvert<float, true>(const std::string& text, float& value)
{
    if (text.empty())
        return false;
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    float number = 0;
    stream >> number;
    if (!stream.fail() && stream.eof()) {
        value = number;
        return true;
    }
    double special = 0;
    if (tryExtractSpecialFloating<double>(text, 0, special) != text.size())
        return false;
    value = static_cast<float>(special);
    return true;
}

template <>
unsigned long long tryExtractSpecialFloating<double>(const std::string& text, unsigned long long position,
                                                     double& value)
{
    using Entry = std::pair<std::string_view, double>;
    // "infinity" stands before "inf" so that the longer name is taken whole.
    static const std::array<Entry, 3> table{Entry{"nan", std::numeric_limits<double>::quiet_NaN()},
                                            Entry{"infinity", std::numeric_limits<double>::infinity()},
                                            Entry{"inf", std::numeric_limits<double>::infinity()}};

    if (position >= text.size())
        return position;
    const bool negative = text[position] == '-';
    const auto start = position + (negative ? 1 : 0);
    for (const auto& [name, number] : table)
        if (StringHelper::isInclude(text, name, start, text.size(), true)) {
            value = negative ? -number : number;
            return start + name.size();
        }
    return position;
}

} // namespace Kes
