#include <Overcurrent/text/ScreenNumber.h>

#include <KesCommon/Language.h>
#include <KesCommon/StringHelper.h>

#include <algorithm>

namespace Overcurrent::ScreenNumber {

namespace {

std::string localised(std::string text)
{
    if (lng::language == lng::Russian)
        std::replace(text.begin(), text.end(), '.', ',');
    return text;
}

} // namespace

std::string fixed(double value, int decimals)
{
    return localised(Kes::StringHelper::format("%.*f", decimals, value));
}

std::string withSign(double value, int decimals)
{
    return localised(Kes::StringHelper::format("%+.*f", decimals, value));
}

std::string shortest(double value)
{
    return localised(Kes::StringHelper::format("%.6g", value));
}

} // namespace Overcurrent::ScreenNumber
