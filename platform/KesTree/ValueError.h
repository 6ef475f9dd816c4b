#pragma once

#include <KesCommon/ObjectError.h>

#include <string>

namespace KesTree {

/// Why a node has refused a value. The message names the node: "Setting current Is: 500 A is outside
/// 0.05 … 100 A". A value; any thread.
class KES_EXPORT ValueError : public Kes::ObjectError {
public:
    /// The name of the node as the user reads it, and a reason that does not name it. Both are texts in the
    /// language of the process as it is now.
    ValueError(std::string node, std::string reason);

    std::string getMessage() const override;
    /// The message without the node's name, for a place where the name already stands.
    const std::string& getReason() const { return _reason; }

private:
    std::string _node;
    std::string _reason;
};

} // namespace KesTree
