#pragma once

#include <KesCommon/Export.h>
#include <KesProgram/archive/DataSnapshot.h>
#include <KesProgram/archive/IWorkKeeper.h>
#include <KesProgram/recovery/RecoveryStore.h>

#include <sigc++/sigc++.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace KesProgram {

class ArchiveManager;
class CopyWriter;

/// Keeps a recovery copy of one document as long as it holds what is in no file.
///
/// Once a second it takes a snapshot of the data on the GUI thread, since nothing else sees every edit and
/// every result; a thread of its own packs and writes what has changed. The copy goes when the work has been
/// saved or given up by the user's answer, and stays in every other case, whatever ends the process.
/// Owned by the presenter of the program; the manager outlives it. GUI thread, but for `writeNow`.
class KES_EXPORT RecoveryKeeper : public IWorkKeeper, public sigc::trackable {
public:
    /// What the data holds, in the program's own words; may be empty.
    using Describe = std::function<std::string()>;

    /// `folder`: that of the `RecoveryStore`. The data at this moment counts as saved.
    RecoveryKeeper(ArchiveManager& manager, std::string program, const std::string& folder,
                   Describe describe);
    ~RecoveryKeeper() override;
    RecoveryKeeper(const RecoveryKeeper&) = delete;
    RecoveryKeeper& operator=(const RecoveryKeeper&) = delete;

    /// Writes the copy at once, for a process that is about to end; returns when it is on the disk, or when
    /// the time is over. On another thread than the GUI thread it writes the last snapshot that was taken.
    /// True when everything of that snapshot is on the disk. Any thread; throws nothing.
    bool writeNow(std::chrono::milliseconds time) noexcept;

    /// Without a user, what could not be saved is kept, whatever the answers to questions are.
    void setIsUnattended(bool isUnattended) { _isUnattended = isUnattended; }
    /// The program closes: removes what the user has given up, and writes nothing any more.
    void end();

    /// Whether the document holds what is in no file, and more than a new one does.
    bool hasUnsavedWork() const;
    RecoveryStore& getStore() { return _store; }
    /// The present data is that of the lost work, and its copies are this keeper's.
    void adopt(LostWork work);

    void onReplaced() override;
    bool onSaving(const std::string& fileName, const std::string& former, const DataSnapshot& snapshot,
                  const std::string& present) override;
    void onSaved(const std::string& fileName, SaveEnd end) override;
    void onReleased(bool isUnsaved) override;

private:
    /// What becomes of the copy when the document is replaced or the program ends.
    enum class Fate { Undecided, GivenUp, Kept };

    bool _onTick();
    void _look();
    void _remove();
    bool _keepFormer(const std::string& fileName, const std::string& bytes);
    RecoveryCopy _describe(const std::string& fileName) const;

    ArchiveManager& _manager;
    const std::string _program;
    const Describe _describeData;
    RecoveryStore _store;
    std::unique_ptr<CopyWriter> _writer;
    /// What is in the file, or was in the document when it was new; nothing when that is not known.
    std::optional<DataSnapshot> _saved;
    /// What has been handed to the writer; without data: it has to be handed over whatever it is.
    DataSnapshot _last;
    /// What is being saved. A run that continues may have changed the data since.
    DataSnapshot _saving;
    Fate _fate = Fate::Undecided;
    /// What the user has given up; edits made since are not part of it.
    DataSnapshot _givenUp;
    /// The file that the last save has left in pieces; the store has what was in it.
    std::optional<std::string> _brokenFile;
    bool _hasSaveFailed = false;
    bool _hasFailed = false;
    bool _isUnattended = false;
    std::atomic<bool> _isEnded{false};
    const std::thread::id _guiThread = std::this_thread::get_id();
    sigc::connection _timer;
};

} // namespace KesProgram
