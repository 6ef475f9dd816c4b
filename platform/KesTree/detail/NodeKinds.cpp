#include <KesTree/detail/NodeKinds.h>

#include <KesCommon/NumberText.h>
#include <KesCommon/StringHelper.h>
#include <KesTree/TreeText.h>

#include <glibmm/ustring.h>

#include <algorithm>
#include <cmath>

namespace KesTree {

namespace {

using Kes::StringHelper::format;
using lng::Tree;
using Value = Node::Value;

Reason wrongType()
{
    return Tree::get("Error.wrongType");
}

/// What XML 1.0 can hold.
bool isStorable(const std::string& text)
{
    const Glib::ustring characters(text);
    return characters.validate() && std::all_of(characters.begin(), characters.end(), [](gunichar c) {
               return (c >= 0x20 && c != 0xFFFE && c != 0xFFFF) || c == '\t' || c == '\n' || c == '\r';
           });
}

/// Monostate for a number that could not be read.
template <typename Number>
Value orNothing(const std::optional<Number>& read)
{
    return read ? Value(*read) : Value();
}

} // namespace

Reason GroupKind::check(Value&) const
{
    return Tree::get("Error.group");
}

Reason GroupKind::parse(const std::string&, Value&) const
{
    return Tree::get("Error.group");
}

Reason NumberKind::check(Value& value) const
{
    if (const auto* whole = std::get_if<long long>(&value))
        value = static_cast<double>(*whole);
    const auto* number = std::get_if<double>(&value);
    if (!number)
        return wrongType();
    return std::isfinite(*number) ? _range.check(*number, show(value)) : Reason(Tree::get("Error.notFinite"));
}

std::string NumberKind::show(const Value& value) const
{
    return Kes::NumberText::show(std::get<double>(value));
}

Reason NumberKind::parse(const std::string& text, Value& value) const
{
    value = orNothing(Kes::NumberText::read(_range.takeNumber(text)));
    return value.index() == 0 ? Reason(_range.refuse("Error.notNumber", text)) : std::nullopt;
}

std::string NumberKind::write(const Value& value) const
{
    return Kes::NumberText::write(std::get<double>(value));
}

Value NumberKind::read(const std::string& text) const
{
    return orNothing(Kes::NumberText::read(text));
}

Reason IntegerKind::check(Value& value) const
{
    const auto* whole = std::get_if<long long>(&value);
    return whole ? _range.check(static_cast<double>(*whole), write(value)) : wrongType();
}

Reason IntegerKind::parse(const std::string& text, Value& value) const
{
    value = orNothing(Kes::NumberText::readInteger(_range.takeNumber(text)));
    return value.index() == 0 ? Reason(_range.refuse("Error.notInteger", text)) : std::nullopt;
}

std::string IntegerKind::write(const Value& value) const
{
    return std::to_string(std::get<long long>(value));
}

Value IntegerKind::read(const std::string& text) const
{
    return orNothing(Kes::NumberText::readInteger(text));
}

Reason BooleanKind::check(Value& value) const
{
    return std::holds_alternative<bool>(value) ? std::nullopt : wrongType();
}

std::string BooleanKind::show(const Value& value) const
{
    return Tree::get(std::get<bool>(value) ? "Value.yes" : "Value.no");
}

Reason BooleanKind::parse(const std::string& text, Value& value) const
{
    for (const bool candidate : {true, false})
        if (trimmed(text) == show(candidate)) {
            value = candidate;
            return std::nullopt;
        }
    return format(Tree::get("Error.notBoolean"), quoted(text));
}

std::string BooleanKind::write(const Value& value) const
{
    return std::get<bool>(value) ? "true" : "false";
}

Value BooleanKind::read(const std::string& text) const
{
    for (const bool candidate : {true, false})
        if (text == write(candidate))
            return candidate;
    return {};
}

Reason ChoiceKind::check(Value& value) const
{
    const auto* chosen = std::get_if<long long>(&value);
    if (!chosen)
        return wrongType();
    const bool isThere = *chosen >= 0 && *chosen < static_cast<long long>(_choices.size());
    return isThere ? std::nullopt : Reason(Tree::get("Error.choiceIndex"));
}

std::string ChoiceKind::show(const Value& value) const
{
    return _choices[static_cast<std::size_t>(std::get<long long>(value))].get();
}

Reason ChoiceKind::parse(const std::string& text, Value& value) const
{
    const auto names = getChoices();
    const auto found = std::find(names.begin(), names.end(), text);
    if (found == names.end())
        return format(Tree::get("Error.notChoice"), quoted(text));
    value = static_cast<long long>(found - names.begin());
    return std::nullopt;
}

std::string ChoiceKind::write(const Value& value) const
{
    return std::to_string(std::get<long long>(value));
}

Value ChoiceKind::read(const std::string& text) const
{
    return orNothing(Kes::NumberText::readInteger(text));
}

std::vector<std::string> ChoiceKind::getChoices() const
{
    std::vector<std::string> names;
    std::transform(_choices.begin(), _choices.end(), std::back_inserter(names),
                   [](const lng::Text& choice) { return choice.get(); });
    return names;
}

Reason TextKind::check(Value& value) const
{
    const auto* text = std::get_if<std::string>(&value);
    if (!text)
        return wrongType();
    return isStorable(*text) ? std::nullopt : Reason(Tree::get("Error.notText"));
}

std::string TextKind::show(const Value& value) const
{
    return _show ? _show(write(value)) : write(value);
}

Reason TextKind::parse(const std::string& text, Value& value) const
{
    value = _read ? _read(text) : text;
    return std::nullopt;
}

std::string TextKind::write(const Value& value) const
{
    return std::get<std::string>(value);
}

void TextKind::setNotation(std::function<std::string(const std::string&)> show,
                           std::function<std::string(const std::string&)> read)
{
    _show = std::move(show);
    _read = std::move(read);
}

} // namespace KesTree
