#pragma once

#include <KesTestProgram/ArchiveHead.h>
#include <KesTree/Node.h>

#include <functional>
#include <string>
#include <vector>

namespace KesTestProgram {

/// What has been read of an archive file, for the model to take over. A value. GUI thread.
struct LoadedArchive : ArchiveHead {
    explicit LoadedArchive(const ArchiveHead& head) : ArchiveHead(head) {}

    /// Puts everything but the settings into the model.
    std::function<void()> take;

    /// What could not be read of the program's other parts, as texts for the user.
    std::vector<std::string> otherLosses;
    /// Nothing but the settings is left.
    bool isRestLost = false;
    /// Puts the settings with which the results were measured into the test object; false when it refuses
    /// one of them. None without results.
    std::function<bool(KesTree::Node& testObject)> putSettingsOfTest;
};

} // namespace KesTestProgram
