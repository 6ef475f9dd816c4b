#pragma once

#include <KesCommon/Export.h>

#include <string>

namespace KesProgram {

class DataSnapshot;

/// Keeps copies of work beside the archive's file. Called by `ArchiveManager`; before the keeper dies,
/// `setWorkKeeper(nullptr)`. GUI thread.
class KES_EXPORT IWorkKeeper {
public:
    /// How a save ended.
    enum class SaveEnd {
        /// The file could not be opened: it is as it was.
        Untouched,
        /// It has been written, and does not hold what it should.
        Broken,
        /// It holds what it should, on the disk.
        Whole
    };

    virtual ~IWorkKeeper();

    /// The data has been replaced by that of a file, or by that of a new document.
    virtual void onReplaced() = 0;
    /// The file is to be overwritten. `former`: its bytes, empty when there are none. `present`: those of the
    /// snapshot, which are to be its bytes. Returns whether one of the two can be had back, whatever becomes
    /// of the file.
    virtual bool onSaving(const std::string& fileName, const std::string& former,
                          const DataSnapshot& snapshot, const std::string& present) = 0;
    virtual void onSaved(const std::string& fileName, SaveEnd end) = 0;
    /// The data may be replaced from now on, or the program closed. `isUnsaved`: the user wanted it saved,
    /// and it could not be.
    virtual void onReleased(bool isUnsaved) = 0;
};

} // namespace KesProgram
