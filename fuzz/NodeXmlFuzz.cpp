// The values of a tree with nodes of every type, groups within groups, and a rule among them.

#include "TreeXml.h"

#include <cstdint>
#include <memory>

namespace {

using KesTree::Node;

std::unique_ptr<Node> makeTree()
{
    auto root = Node::group("root", {"Test.root", "Root", "Корень"});
    root->add(Node::number("number", {"Test.number", "Number", "Число"}, lng::Unit::ampere, 1.0, 0.0, 100.0));
    root->add(Node::integer("integer", {"Test.integer", "Integer", "Целое"}, {}, 3, -5, 5));
    auto& inner = root->add(Node::group("inner", {"Test.inner", "Inner", "Внутри"}));
    inner.add(Node::boolean("boolean", {"Test.boolean", "Boolean", "Да или нет"}, true));
    inner.add(Node::choice("choice", {"Test.choice", "Choice", "Выбор"},
                           {{"Test.one", "One", "Раз"}, {"Test.two", "Two", "Два"}}, 1));
    inner.add(Node::text("text", {"Test.text", "Text", "Текст"}, "Реле <1> & \"2\""));
    auto* number = root->find("number");
    root->find("integer")->setValidation([number](const Node::Value& value) -> Kes::Result {
        return static_cast<double>(std::get<long long>(value)) <= number->getNumber() + 4.0;
    });
    return root;
}

} // namespace

/// The first byte tells whether all values are demanded.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const auto tree = makeTree();
    if (size == 0)
        return 0;
    checkTreeXml(*tree, std::string(reinterpret_cast<const char*>(bytes + 1), size - 1), bytes[0] == 'c');
    return 0;
}
