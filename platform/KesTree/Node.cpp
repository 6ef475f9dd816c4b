#include <KesTree/Node.h>

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

Node::Node(Key, NodeType type, std::string id, lng::Text name) : _type(type), _id(std::move(id)), _name(name)
{}

Node::~Node() = default;

std::unique_ptr<Node> Node::_make(NodeType type, std::string id, lng::Text name)
{
    require(isId(id), "an id consists of ASCII letters, digits, \"_\", \"-\" and \".\"");
    return std::make_unique<Node>(Key(), type, std::move(id), name);
}

std::unique_ptr<Node> Node::_finish(std::unique_ptr<Node> node, Value value)
{
    if (const auto result = node->_checkRange(value); !result)
        throw std::invalid_argument(result.getError()->getMessage());
    node->_value = std::move(value);
    return node;
}

std::unique_ptr<Node> Node::group(std::string id, lng::Text name)
{
    return _make(NodeType::Group, std::move(id), name);
}

std::unique_ptr<Node> Node::number(std::string id, lng::Text name, lng::Text unit, double value,
                                   double minimum, double maximum)
{
    require(minimum <= maximum, "the range is empty");
    auto node = _make(NodeType::Number, std::move(id), name);
    node->_unit = unit;
    node->_minimum = minimum;
    node->_maximum = maximum;
    return _finish(std::move(node), value);
}

std::unique_ptr<Node> Node::integer(std::string id, lng::Text name, lng::Text unit, long long value,
                                    long long minimum, long long maximum)
{
    require(minimum <= maximum, "the range is empty");
    auto node = _make(NodeType::Integer, std::move(id), name);
    node->_unit = unit;
    node->_minimum = static_cast<double>(minimum);
    node->_maximum = static_cast<double>(maximum);
    require(std::abs(node->_minimum) <= maximumExactBound && std::abs(node->_maximum) <= maximumExactBound,
            "the bounds of a whole number lie within 2^53");
    return _finish(std::move(node), value);
}

std::unique_ptr<Node> Node::boolean(std::string id, lng::Text name, bool value)
{
    return _finish(_make(NodeType::Boolean, std::move(id), name), value);
}

std::unique_ptr<Node> Node::choice(std::string id, lng::Text name, std::vector<lng::Text> choices,
                                   std::size_t value)
{
    auto node = _make(NodeType::Choice, std::move(id), name);
    node->_choices = std::move(choices);
    return _finish(std::move(node), static_cast<long long>(value));
}

std::unique_ptr<Node> Node::text(std::string id, lng::Text name, std::string value)
{
    return _finish(_make(NodeType::Text, std::move(id), name), std::move(value));
}

std::vector<std::string> Node::getChoices() const
{
    std::vector<std::string> names;
    std::transform(_choices.begin(), _choices.end(), std::back_inserter(names),
                   [](const lng::Text& choice) { return choice.get(); });
    return names;
}

void Node::setValidation(std::function<Kes::Result(const Value&)> validation)
{
    _validation = std::move(validation);
}

void Node::setNotation(std::function<std::string(const std::string&)> show,
                       std::function<std::string(const std::string&)> read)
{
    _show = std::move(show);
    _read = std::move(read);
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
    require(_type == NodeType::Group, "only a group has children");
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
