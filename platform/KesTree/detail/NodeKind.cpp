#include <KesTree/detail/NodeKind.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesTree/TreeText.h>

#include <glibmm/ustring.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace KesTree {

namespace {

using Kes::StringHelper::endsWith;
using Kes::StringHelper::format;
using lng::Tree;

/// A number, its unit and the other end of its range stay on one line.
constexpr const char* noBreakSpace = "\u00a0";

} // namespace

std::string quoted(const std::string& text)
{
    constexpr Glib::ustring::size_type longest = 40;
    Glib::ustring shown = Glib::ustring(text).make_valid();
    if (shown.size() > longest)
        shown = shown.substr(0, longest) + "…";
    std::string bytes = shown.raw();
    std::replace_if(
        bytes.begin(), bytes.end(), [](unsigned char c) { return c < 0x20; }, ' ');
    return bytes;
}

std::string trimmed(std::string text)
{
    const std::string_view noBreak = noBreakSpace;
    for (auto place = text.find(noBreak); place != std::string::npos; place = text.find(noBreak))
        text.replace(place, noBreak.size(), " ");
    return std::string(Kes::StringHelper::trim(text));
}

NodeRange::NodeRange(lng::Text unit, double minimum, double maximum)
    : _unit(unit), _minimum(minimum), _maximum(maximum)
{}

std::string NodeRange::_withUnit(const std::string& number) const
{
    const std::string unit = getUnit();
    return unit.empty() ? number : number + noBreakSpace + unit;
}

std::string NodeRange::getText() const
{
    const auto minimum = Kes::NumberText::show(_minimum);
    const auto maximum = _withUnit(Kes::NumberText::show(_maximum));
    if (std::isfinite(_minimum) && std::isfinite(_maximum))
        return minimum + noBreakSpace + "…" + noBreakSpace + maximum;
    if (std::isfinite(_minimum))
        return std::string("≥") + noBreakSpace + _withUnit(minimum);
    return std::isfinite(_maximum) ? std::string("≤") + noBreakSpace + maximum : std::string();
}

Reason NodeRange::check(double number, const std::string& shown) const
{
    if (number >= _minimum && number <= _maximum)
        return std::nullopt;
    return format(Tree::get("Error.outside"), _withUnit(shown), getText());
}

std::string NodeRange::refuse(const char* key, const std::string& text) const
{
    const auto reason = format(Tree::get(key), quoted(text));
    const auto range = getText();
    return range.empty() ? reason : format(Tree::get("Error.allowed"), reason, range);
}

std::string NodeRange::takeNumber(const std::string& text) const
{
    const std::string number = trimmed(text);
    for (const std::string unit : {_unit.get(), _unit.pair[0], _unit.pair[1]})
        if (!unit.empty() && endsWith(number, unit))
            return number.substr(0, number.size() - unit.size());
    return number;
}

} // namespace KesTree
