#pragma once

#include "Require.h"

#include <KesTree/Node.h>

#include <string>

/// Reads the text into the tree. What is refused changes nothing; what is accepted is written as text that
/// the tree accepts with nothing left to change.
inline void checkTreeXml(KesTree::Node& tree, const std::string& xml, bool complete)
{
    const std::string before = tree.serialize();
    const bool isRead = static_cast<bool>(tree.deserialize(xml, complete));
    const std::string after = tree.serialize();
    require(isRead || after == before, "a refused text changes nothing");
    require(static_cast<bool>(tree.deserialize(after)), "what was written is accepted");
    require(tree.serialize() == after, "writing is stable");
    require(static_cast<bool>(tree.deserialize(before)), "the old values are accepted again");
}
