#pragma once

#include <KesTree/Node.h>

#include <utility>
#include <vector>

namespace xmlpp {
class Element;
class Document;
} // namespace xmlpp

namespace KesTree {

/// Writes the values of a tree: an element "tree" around one "group" or "value" per node with the id as
/// attribute and the value as text.
class NodeXmlWriter {
public:
    static std::string write(const Node& root);

private:
    static void _write(const Node& node, xmlpp::Element& parent);
};

/// Reads the values of a tree: first all of them are checked one by one, then they are put in place without
/// a signal and the validations asked, and only then the change is signalled; on a failure the old values
/// stand.
class NodeXmlReader {
public:
    explicit NodeXmlReader(Node& root) : _root(root) {}

    Kes::Result read(const std::string& xml, bool complete);

private:
    using NodeValue = std::pair<Node*, Node::Value>;

    Kes::Result _collect(const std::string& xml);
    Kes::Result _readDocument(const xmlpp::Document& document);
    Kes::Result _readNode(Node& node, const xmlpp::Element& element);
    Kes::Result _readGroup(Node& node, const xmlpp::Element& element);
    Kes::Result _readValue(Node& node, const xmlpp::Element& element);
    /// What a tree from before there were some values would hold.
    void _addLater(Node& node);
    Kes::Result _checkComplete(const Node& node) const;
    Kes::Result _validateAll(const Node& node) const;
    bool _isRead(const Node& node) const;
    /// Exchanges the values in place with the collected ones.
    void _swap();
    Kes::Result _apply();

    Node& _root;
    std::vector<NodeValue> _values;
};

} // namespace KesTree
