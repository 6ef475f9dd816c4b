#include <KesMeasure/ScreenNumber.h>

#include <KesCommon/Language.h>
#include <KesCommon/StringHelper.h>

#include <algorithm>
#include <cmath>

namespace KesMeasure::ScreenNumber {

namespace {

std::string localised(std::string text)
{
    std::replace(text.begin(), text.end(), '.', lng::decimalSign());
    return text;
}

/// Without the zeros at the end beyond `least` decimals.
std::string between(double value, int least, int most)
{
    std::string text = Kes::StringHelper::format("%.*f", most, value);
    for (int decimals = most; decimals > least && text.back() == '0'; --decimals)
        text.pop_back();
    return localised(text);
}

} // namespace

std::string fixed(double value, int decimals)
{
    return localised(Kes::StringHelper::format("%.*f", decimals, value));
}

std::string multiple(double value)
{
    return between(value, 2, 3);
}

std::string amperes(double value)
{
    // The first digit of 0.05 is its second decimal.
    const double first = value > 0.0 ? std::ceil(-std::log10(value)) : 0.0;
    return between(value, 3, 3 + static_cast<int>(std::clamp(first, 0.0, 6.0)));
}

std::string withSign(double value, int decimals)
{
    return localised(Kes::StringHelper::format("%+.*f", decimals, value));
}

std::string shortest(double value)
{
    return localised(Kes::StringHelper::format("%.6g", value));
}

std::string duration(double seconds)
{
    const long long whole = std::llround(std::max(seconds, 0.0));
    const long long minutes = whole / 60;
    if (minutes < 60)
        return Kes::StringHelper::format("%lld:%02lld", minutes, whole % 60);
    return Kes::StringHelper::format("%lld:%02lld:%02lld", minutes / 60, minutes % 60, whole % 60);
}

} // namespace KesMeasure::ScreenNumber
