#include <KesTree/Node.h>

#include <KesTree/TreeText.h>
#include <KesTree/ValueError.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/ObjectErrorHelper.h>
#include <KesCommon/StringHelper.h>

#include <glibmm/ustring.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace KesTree {

namespace {

using Kes::StringHelper::endsWith;
using Kes::StringHelper::format;
using lng::Tree;

/// The user's text for a message: valid, on one line and not too long.
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

/// What XML 1.0 can hold.
bool isStorable(const std::string& text)
{
    const Glib::ustring characters(text);
    return characters.validate() && std::all_of(characters.begin(), characters.end(), [](gunichar c) {
               return (c >= 0x20 && c != 0xFFFE && c != 0xFFFF) || c == '\t' || c == '\n' || c == '\r';
           });
}

/// A number, its unit and the other end of its range stay on one line.
constexpr const char* noBreakSpace = "\u00a0";

bool isBound(double bound)
{
    return std::isfinite(bound);
}

/// Without blanks around; one that keeps a number and its unit on one line counts as a plain one.
std::string trimmed(std::string text)
{
    const std::string_view noBreak = noBreakSpace;
    for (auto place = text.find(noBreak); place != std::string::npos; place = text.find(noBreak))
        text.replace(place, noBreak.size(), " ");
    return std::string(Kes::StringHelper::trim(text));
}

} // namespace

double Node::getNumber() const
{
    return std::get<double>(_value);
}

long long Node::getInteger() const
{
    return std::get<long long>(_value);
}

bool Node::getBoolean() const
{
    return std::get<bool>(_value);
}

std::size_t Node::getChoice() const
{
    return static_cast<std::size_t>(std::get<long long>(_value));
}

const std::string& Node::getText() const
{
    return std::get<std::string>(_value);
}

std::string Node::_withUnit(const std::string& number) const
{
    return getUnit().empty() ? number : number + noBreakSpace + getUnit();
}

std::string Node::getRangeText() const
{
    if (_type != NodeType::Number && _type != NodeType::Integer)
        return {};
    const auto minimum = Kes::NumberText::show(_minimum);
    const auto maximum = _withUnit(Kes::NumberText::show(_maximum));
    if (isBound(_minimum) && isBound(_maximum))
        return minimum + noBreakSpace + "…" + noBreakSpace + maximum;
    if (isBound(_minimum))
        return std::string("≥") + noBreakSpace + _withUnit(minimum);
    return isBound(_maximum) ? std::string("≤") + noBreakSpace + maximum : std::string();
}

Kes::Result Node::_refuse(std::string reason) const
{
    return Kes::Result(std::make_shared<ValueError>(getName(), std::move(reason)));
}

Kes::Result Node::_checkRange(Value& value) const
{
    if (_type == NodeType::Group)
        return _refuse(Tree::get("Error.group"));
    if (const auto* whole = std::get_if<long long>(&value); whole && _type == NodeType::Number)
        value = static_cast<double>(*whole);
    // In the order of NodeType, as the alternatives of a value are.
    constexpr std::size_t alternatives[] = {0, 1, 2, 3, 2, 4};
    if (value.index() != alternatives[static_cast<std::size_t>(_type)])
        return _refuse(Tree::get("Error.wrongType"));

    const auto checkBounds = [this](double number, const std::string& text) {
        if (number >= _minimum && number <= _maximum)
            return Kes::Result(true);
        return _refuse(format(Tree::get("Error.outside"), _withUnit(text), getRangeText()));
    };
    if (const auto* number = std::get_if<double>(&value))
        return std::isfinite(*number) ? checkBounds(*number, Kes::NumberText::show(*number))
                                      : _refuse(Tree::get("Error.notFinite"));
    if (const auto* whole = std::get_if<long long>(&value)) {
        if (_type == NodeType::Integer)
            return checkBounds(static_cast<double>(*whole), std::to_string(*whole));
        if (*whole < 0 || *whole >= static_cast<long long>(_choices.size()))
            return _refuse(Tree::get("Error.choiceIndex"));
    }
    if (const auto* text = std::get_if<std::string>(&value); text && !isStorable(*text))
        return _refuse(Tree::get("Error.notText"));
    return true;
}

Kes::Result Node::_validate(const Value& value) const
{
    if (!_validation)
        return true;
    const auto result = _validation(value);
    if (result)
        return true;
    return _refuse(result.getError() ? Kes::ObjectErrorHelper::toDisplayString({result.getError()})
                                     : Tree::get("Error.refused"));
}

Kes::Result Node::setValue(const Value& value)
{
    Value accepted = value;
    if (auto result = _checkRange(accepted); !result)
        return result;
    if (auto result = _validate(accepted); !result)
        return result;
    if (accepted != _value) {
        _value = std::move(accepted);
        _emitChanged();
    }
    return true;
}

std::string Node::toText() const
{
    switch (_type) {
    case NodeType::Group:
        return {};
    case NodeType::Number:
        return Kes::NumberText::show(getNumber());
    case NodeType::Integer:
        return std::to_string(getInteger());
    case NodeType::Boolean:
        return Tree::get(getBoolean() ? "Value.yes" : "Value.no");
    case NodeType::Choice:
        return _choices[getChoice()].get();
    case NodeType::Text:
        return _show ? _show(getText()) : getText();
    }
    return {};
}

Kes::Result Node::setText(const std::string& text)
{
    Value value;
    if (auto result = _parse(text, value); !result)
        return result;
    return setValue(value);
}

Kes::Result Node::checkText(const std::string& text) const
{
    Value value;
    if (auto result = _parse(text, value); !result)
        return result;
    if (auto result = _checkRange(value); !result)
        return result;
    return _validate(value);
}

Kes::Result Node::_parse(const std::string& text, Value& value) const
{
    switch (_type) {
    case NodeType::Group:
        return _refuse(Tree::get("Error.group"));
    case NodeType::Number:
    case NodeType::Integer:
        return _parseNumber(text, value);
    case NodeType::Boolean:
        return _parseBoolean(text, value);
    case NodeType::Choice:
        return _parseChoice(text, value);
    case NodeType::Text:
        value = _read ? _read(text) : text;
        return true;
    }
    return false;
}

std::string Node::_withoutUnit(const std::string& text) const
{
    const std::string number = trimmed(text);
    for (const std::string unit : {_unit.get(), _unit.pair[0], _unit.pair[1]})
        if (!unit.empty() && endsWith(number, unit))
            return number.substr(0, number.size() - unit.size());
    return number;
}

Kes::Result Node::_parseNumber(const std::string& text, Value& value) const
{
    const auto number = _withoutUnit(text);
    if (_type == NodeType::Number) {
        if (const auto read = Kes::NumberText::read(number))
            value = *read;
    } else if (const auto read = Kes::NumberText::readInteger(number))
        value = *read;
    if (value.index() != 0)
        return true;
    const char* key = _type == NodeType::Number ? "Error.notNumber" : "Error.notInteger";
    const auto reason = format(Tree::get(key), quoted(text));
    const auto range = getRangeText();
    return _refuse(range.empty() ? reason : format(Tree::get("Error.allowed"), reason, range));
}

Kes::Result Node::_parseBoolean(const std::string& text, Value& value) const
{
    for (const bool candidate : {true, false})
        if (trimmed(text) == Tree::get(candidate ? "Value.yes" : "Value.no")) {
            value = candidate;
            return true;
        }
    return _refuse(format(Tree::get("Error.notBoolean"), quoted(text)));
}

Kes::Result Node::_parseChoice(const std::string& text, Value& value) const
{
    const auto names = getChoices();
    const auto found = std::find(names.begin(), names.end(), text);
    if (found == names.end())
        return _refuse(format(Tree::get("Error.notChoice"), quoted(text)));
    value = static_cast<long long>(found - names.begin());
    return true;
}

} // namespace KesTree
