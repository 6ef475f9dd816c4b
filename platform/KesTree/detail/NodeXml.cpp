#include <KesTree/detail/NodeXml.h>

#include <KesTree/detail/NodeKind.h>

#include <KesCommon/BoundedXmlReader.h>
#include <KesCommon/StringHelper.h>
#include <KesTree/TreeText.h>

#include <libxml++/libxml++.h>

#include <algorithm>
#include <optional>
#include <set>

namespace KesTree {

namespace {

using Kes::StringHelper::format;
using lng::Tree;

constexpr const char* version = "1";

const char* elementName(const Node& node)
{
    return node.getType() == NodeType::Group ? "group" : "value";
}

Kes::Result formError()
{
    return Kes::Result::failure(Tree::get("Error.xmlForm"));
}

Kes::Result idError(const char* key, const std::string& id)
{
    return Kes::Result::failure(format(Tree::get(key), id));
}

/// The child elements; nothing when there is text between them.
std::optional<std::vector<const xmlpp::Element*>> childElements(const xmlpp::Element& element)
{
    std::vector<const xmlpp::Element*> elements;
    for (const auto* child : element.get_children()) {
        if (const auto* found = dynamic_cast<const xmlpp::Element*>(child))
            elements.push_back(found);
        else if (const auto* text = dynamic_cast<const xmlpp::TextNode*>(child);
                 text && !text->is_white_space())
            return std::nullopt;
    }
    return elements;
}

/// The text of an element that holds nothing else.
std::optional<std::string> elementText(const xmlpp::Element& element)
{
    std::string text;
    for (const auto* child : element.get_children()) {
        const auto* content = dynamic_cast<const xmlpp::ContentNode*>(child);
        if (!content)
            return std::nullopt;
        if (!dynamic_cast<const xmlpp::CommentNode*>(child))
            text += content->get_content().raw();
    }
    return text;
}

} // namespace

void NodeXmlWriter::_write(const Node& node, xmlpp::Element& parent)
{
    auto& element = *parent.add_child(elementName(node));
    element.set_attribute("id", node.getId());
    if (node.getType() != NodeType::Group)
        element.add_child_text(node._kind->write(node.getValue()));
    for (const auto& child : node.getChildren())
        _write(*child, element);
}

std::string NodeXmlWriter::write(const Node& root)
{
    xmlpp::Document document;
    auto& tree = *document.create_root_node("tree");
    tree.set_attribute("version", version);
    _write(root, tree);
    return document.write_to_string_formatted("UTF-8").raw();
}

Kes::Result NodeXmlReader::read(const std::string& xml, bool complete)
{
    auto result = _collect(xml);
    if (result && complete) {
        _addLater(_root);
        result = _checkComplete(_root);
    }
    if (result)
        result = _apply();
    if (result)
        return true;
    return Kes::Result(Kes::TextError::create(Tree::get("Error.read"), {result.getError()}));
}

Kes::Result NodeXmlReader::_collect(const std::string& xml)
{
    Kes::BoundedXmlReader reader;
    auto read = reader.read(xml);
    if (reader.isRefused())
        return formError();
    if (!read)
        return Kes::Result(
            Kes::TextError::create(Tree::get("Error.xml"), {Kes::TextError::create(reader.getError())}));
    return _readDocument(xmlpp::Document(read.release()));
}

Kes::Result NodeXmlReader::_readDocument(const xmlpp::Document& document)
{
    const auto* tree = document.get_root_node();
    if (!tree || tree->get_name() != "tree")
        return formError();
    const std::string written = tree->get_attribute_value("version");
    if (written != version)
        return written.empty() ? formError() : idError("Error.version", written);
    const auto elements = childElements(*tree);
    if (!elements || elements->size() != 1)
        return formError();
    const std::string id = elements->front()->get_attribute_value("id");
    return id == _root.getId() ? _readNode(_root, *elements->front()) : idError("Error.unknownId", id);
}

Kes::Result NodeXmlReader::_readNode(Node& node, const xmlpp::Element& element)
{
    if (element.get_name() != elementName(node))
        return formError();
    return node.getType() == NodeType::Group ? _readGroup(node, element) : _readValue(node, element);
}

Kes::Result NodeXmlReader::_readGroup(Node& node, const xmlpp::Element& element)
{
    const auto elements = childElements(element);
    if (!elements)
        return formError();
    std::set<std::string> seen;
    for (const auto* childElement : *elements) {
        const std::string id = childElement->get_attribute_value("id");
        const auto& children = node.getChildren();
        const auto child = std::find_if(children.begin(), children.end(),
                                        [&](const auto& candidate) { return candidate->getId() == id; });
        if (child == children.end())
            return idError("Error.unknownId", id);
        if (!seen.insert(id).second)
            return idError("Error.twice", id);
        if (auto result = _readNode(**child, *childElement); !result)
            return result;
    }
    return true;
}

Kes::Result NodeXmlReader::_readValue(Node& node, const xmlpp::Element& element)
{
    const auto text = elementText(element);
    if (!text)
        return formError();
    Node::Value value = node._kind->read(*text);
    // Tells what is wrong with the text as it would to a user who has typed it.
    if (value.index() == 0) {
        const auto typed = node._parse(*text, value);
        return typed ? formError() : typed;
    }
    if (auto result = node._check(value); !result)
        return result;
    _values.emplace_back(&node, std::move(value));
    return true;
}

bool NodeXmlReader::_isRead(const Node& node) const
{
    return std::any_of(_values.begin(), _values.end(),
                       [&](const NodeValue& value) { return value.first == &node; });
}

void NodeXmlReader::_addLater(Node& node)
{
    if (node._laterValue && !_isRead(node))
        _values.emplace_back(&node, *node._laterValue);
    for (const auto& child : node.getChildren())
        _addLater(*child);
}

Kes::Result NodeXmlReader::_checkComplete(const Node& node) const
{
    if (node.getType() != NodeType::Group && !_isRead(node))
        return idError("Error.missing", node.getId());
    for (const auto& child : node.getChildren())
        if (auto result = _checkComplete(*child); !result)
            return result;
    return true;
}

Kes::Result NodeXmlReader::_validateAll(const Node& node) const
{
    if (node.getType() != NodeType::Group)
        if (auto result = node._validate(node._value); !result)
            return result;
    for (const auto& child : node.getChildren())
        if (auto result = _validateAll(*child); !result)
            return result;
    return true;
}

void NodeXmlReader::_swap()
{
    for (auto& [node, value] : _values)
        std::swap(node->_value, value);
}

Kes::Result NodeXmlReader::_apply()
{
    _swap();
    if (auto result = _validateAll(_root); !result) {
        _swap();
        return result;
    }
    // Now the collected values are the old ones.
    for (const auto& [node, old] : _values)
        if (node->_value != old)
            node->_emitChanged();
    return true;
}

} // namespace KesTree
