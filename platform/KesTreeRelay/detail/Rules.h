#pragma once

#include <KesTree/Node.h>

#include <string>

namespace KesTree::RelayNodes {

/// Both values of a rule ask it, each with its own new value.
template <typename Rule>
void validateTogether(Node& first, Node& second, Rule rule)
{
    first.setValidation([&second, rule](const Node::Value& value) {
        return rule(std::get<double>(value), second.getNumber());
    });
    second.setValidation([&first, rule](const Node::Value& value) {
        return rule(first.getNumber(), std::get<double>(value));
    });
}

/// The last part of a node's path.
std::string idOf(const char* path);

/// Tolerances of an operate time in percent and in milliseconds, one of which is above zero.
void addTimeTolerances(Node& stage, double percent, double milliseconds);

} // namespace KesTree::RelayNodes
