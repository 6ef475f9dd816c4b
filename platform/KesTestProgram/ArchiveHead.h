#pragma once

#include <string>

namespace KesTestProgram {

/// What the archives of all test programs hold, and what could not be read of it in a repaired one. A value.
struct ArchiveHead {
    /// As `KesTree::Node::serialize` writes it; for the test object to accept or refuse. Empty when lost.
    std::string settings{};
    bool areResultsLost = false;
    bool isOriginLost = false;
};

} // namespace KesTestProgram
