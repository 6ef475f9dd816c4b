#include <KesTree/ValueError.h>

#include <utility>

namespace KesTree {

ValueError::ValueError(std::string node, std::string reason)
    : _node(std::move(node)), _reason(std::move(reason))
{}

std::string ValueError::getMessage() const
{
    return _node + ": " + _reason;
}

} // namespace KesTree
