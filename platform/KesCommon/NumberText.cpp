#include <KesCommon/NumberText.h>

#include <KesCommon/Language.h>
#include <KesCommon/StringHelper.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace Kes::NumberText {

namespace {

/// from_chars knows no plus sign; a minus sign after it is not a number.
std::string_view withoutPlus(std::string_view text)
{
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    return text;
}

/// Keeps "inf", "nan" and hexadecimal forms away from from_chars.
bool isDecimal(std::string_view text)
{
    return text.find_first_not_of("0123456789.,+-eE") == std::string_view::npos &&
           text.find_first_of("0123456789") != std::string_view::npos;
}

template <typename T>
std::optional<T> readWhole(std::string_view text)
{
    T value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

std::string write(double value)
{
    if (value == 0.0)
        return "0";
    const double magnitude = std::abs(value);
    const bool plain = magnitude >= 1e-6 && magnitude < 1e15;
    std::array<char, 64> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                            plain ? std::chars_format::fixed : std::chars_format::general);
    return std::string(buffer.data(), end);
}

std::string show(double value)
{
    auto text = write(value);
    std::replace(text.begin(), text.end(), '.', lng::decimalSign());
    return text;
}

std::optional<double> read(std::string_view text)
{
    text = withoutPlus(StringHelper::trim(text));
    if (!isDecimal(text))
        return std::nullopt;
    std::string pointed(text);
    std::replace(pointed.begin(), pointed.end(), ',', '.');
    return readWhole<double>(pointed);
}

std::optional<long long> readInteger(std::string_view text)
{
    return readWhole<long long>(withoutPlus(StringHelper::trim(text)));
}

} // namespace Kes::NumberText
