#include <KesTree/Node.h>

#include <KesCommon/ObjectErrorHelper.h>
#include <KesTree/TreeText.h>
#include <KesTree/ValueError.h>
#include <KesTree/detail/NodeKinds.h>
#include <KesTree/detail/NodeXml.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string_view>

namespace KesTree {

namespace {

/// Whole numbers up to here are exact as bounds.
constexpr double maximumExactBound = 9007199254740992.0;

void require(bool condition, const char* what)
{
    if (!condition)
        throw std::invalid_argument(what);
}

bool isId(const std::string& id)
{
    constexpr std::string_view allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.";
    return !id.empty() && id.find_first_not_of(allowed) == std::string::npos;
}

} // namespace

Node::Node(Key, std::unique_ptr<NodeKind> kind, std::string id, lng::Text name)
    : _kind(std::move(kind)), _id(std::move(id)), _name(name)
{}

Node::~Node() = default;

std::unique_ptr<Node> Node::_make(std::unique_ptr<NodeKind> kind, std::string id, lng::Text name)
{
    require(isId(id), "an id consists of ASCII letters, digits, \"_\", \"-\" and \".\"");
    return std::make_unique<Node>(Key(), std::move(kind), std::move(id), name);
}

std::unique_ptr<Node> Node::_make(std::unique_ptr<NodeKind> kind, std::string id, lng::Text name, Value value)
{
    auto node = _make(std::move(kind), std::move(id), name);
    if (const auto result = node->_check(value); !result)
        throw std::invalid_argument(result.getError()->getMessage());
    node->_value = std::move(value);
    return node;
}

std::unique_ptr<Node> Node::group(std::string id, lng::Text name)
{
    return _make(std::make_unique<GroupKind>(), std::move(id), name);
}

std::unique_ptr<Node> Node::number(std::string id, lng::Text name, lng::Text unit, double value,
                                   double minimum, double maximum)
{
    require(minimum <= maximum, "the range is empty");
    return _make(std::make_unique<NumberKind>(NodeRange(unit, minimum, maximum)), std::move(id), name, value);
}

std::unique_ptr<Node> Node::integer(std::string id, lng::Text name, lng::Text unit, long long value,
                                    long long minimum, long long maximum)
{
    const NodeRange range(unit, static_cast<double>(minimum), static_cast<double>(maximum));
    require(minimum <= maximum, "the range is empty");
    require(std::abs(range.getMinimum()) <= maximumExactBound &&
                std::abs(range.getMaximum()) <= maximumExactBound,
            "the bounds of a whole number lie within 2^53");
    return _make(std::make_unique<IntegerKind>(range), std::move(id), name, value);
}

std::unique_ptr<Node> Node::boolean(std::string id, lng::Text name, bool value)
{
    return _make(std::make_unique<BooleanKind>(), std::move(id), name, value);
}

std::unique_ptr<Node> Node::choice(std::string id, lng::Text name, std::vector<lng::Text> choices,
                                   std::size_t value)
{
    return _make(std::make_unique<ChoiceKind>(std::move(choices)), std::move(id), name,
                 static_cast<long long>(value));
}

std::unique_ptr<Node> Node::text(std::string id, lng::Text name, std::string value)
{
    return _make(std::make_unique<TextKind>(), std::move(id), name, std::move(value));
}

NodeType Node::getType() const
{
    return _kind->getType();
}

std::string Node::getUnit() const
{
    const auto* range = _kind->getRange();
    return range ? range->getUnit() : std::string();
}

double Node::getMinimum() const
{
    const auto* range = _kind->getRange();
    return range ? range->getMinimum() : 0.0;
}

double Node::getMaximum() const
{
    const auto* range = _kind->getRange();
    return range ? range->getMaximum() : 0.0;
}

std::string Node::getRangeText() const
{
    const auto* range = _kind->getRange();
    return range ? range->getText() : std::string();
}

std::vector<std::string> Node::getChoices() const
{
    return _kind->getChoices();
}

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

Kes::Result Node::_refuse(std::string reason) const
{
    return Kes::Result(std::make_shared<ValueError>(getName(), std::move(reason)));
}

Kes::Result Node::_check(Value& value) const
{
    const auto reason = _kind->check(value);
    return reason ? _refuse(*reason) : Kes::Result(true);
}

Kes::Result Node::_validate(const Value& value) const
{
    if (!_validation)
        return true;
    const auto result = _validation(value);
    if (result)
        return true;
    return _refuse(result.getError() ? Kes::ObjectErrorHelper::toDisplayString({result.getError()})
                                     : lng::Tree::get("Error.refused"));
}

Kes::Result Node::setValue(const Value& value)
{
    Value accepted = value;
    if (auto result = _check(accepted); !result)
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
    return _kind->show(_value);
}

Kes::Result Node::_parse(const std::string& text, Value& value) const
{
    const auto reason = _kind->parse(text, value);
    return reason ? _refuse(*reason) : Kes::Result(true);
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
    if (auto result = _check(value); !result)
        return result;
    return _validate(value);
}

void Node::setValidation(std::function<Kes::Result(const Value&)> validation)
{
    _validation = std::move(validation);
}

void Node::setNotation(std::function<std::string(const std::string&)> show,
                       std::function<std::string(const std::string&)> read)
{
    _kind->setNotation(std::move(show), std::move(read));
}

void Node::setUsage(std::function<bool()> usage)
{
    _usage = std::move(usage);
}

bool Node::isUsed() const
{
    return !_usage || _usage();
}

Node& Node::add(std::unique_ptr<Node> child)
{
    require(child != nullptr, "there is no child");
    require(getType() == NodeType::Group, "only a group has children");
    require(std::none_of(_children.begin(), _children.end(),
                         [&](const auto& sibling) { return sibling->_id == child->_id; }),
            "the ids of siblings differ");
    child->_parent = this;
    return *_children.emplace_back(std::move(child));
}

Node* Node::find(const std::string& path) const
{
    const Node* node = this;
    for (std::string_view rest = path; !rest.empty();) {
        const auto id = rest.substr(0, rest.find('/'));
        rest.remove_prefix(std::min(id.size() + 1, rest.size()));
        const auto child = std::find_if(node->_children.begin(), node->_children.end(),
                                        [&](const auto& candidate) { return candidate->_id == id; });
        if (child == node->_children.end())
            return nullptr;
        node = child->get();
    }
    return const_cast<Node*>(node);
}

std::string Node::serialize() const
{
    return NodeXmlWriter::write(*this);
}

Kes::Result Node::deserialize(const std::string& xml, bool complete)
{
    return NodeXmlReader(*this).read(xml, complete);
}

void Node::_emitChanged()
{
    for (Node* node = this; node; node = node->_parent)
        node->signalChanged.emit(*this);
}

} // namespace KesTree
