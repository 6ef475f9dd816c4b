#pragma once

#include <KesCommon/Export.h>
#include <KesCommon/Result.h>
#include <KesProgram/archive/DataSnapshot.h>

#include <sigc++/sigc++.h>

#include <functional>
#include <istream>
#include <memory>
#include <string>

namespace KesProgram {

class IWorkKeeper;
struct FileIdentity;

/// The current archive file of a program: its path, and moving its bytes between the disk and the model.
///
/// Owned by the model, one per program. Only the model knows what the bytes mean, by the three functions
/// given at construction. The manager shows nothing; `ArchiveManagerPresenter` does.
///
/// A file is overwritten in place, so a full disk or a power cut can leave it in pieces: an `IWorkKeeper` is
/// given the bytes before and after, and a file that was not written correctly is reported in the log.
/// GUI thread.
class KES_EXPORT ArchiveManager {
public:
    using NewData = std::function<void(const std::string& name)>;
    using DataProvider = std::function<std::unique_ptr<std::istream>()>;
    using DataConsumer = std::function<bool(std::istream& stream, bool repair)>;

    /// `newData` begins a new, empty data set. `getDataStream` gives the file's whole content as it would be
    /// saved now, never null and always the same bytes for the same data. `setDataStream` loads the data,
    /// false when it is unusable. An empty function raises std::bad_function_call where it is needed.
    ArchiveManager(NewData newData, DataProvider getDataStream, DataConsumer setDataStream);
    ~ArchiveManager();
    ArchiveManager(const ArchiveManager&) = delete;
    ArchiveManager& operator=(const ArchiveManager&) = delete;

    /// The path has changed; read it with `getFileName`.
    sigc::signal<void()> signalFileNameChanged;

    /// Whether `init` has run.
    bool isInited() const { return _isInited; }
    /// Whether the data has never been in a file.
    bool isNew() const { return _fileName.empty(); }
    /// The path of the current file; empty for a new one.
    const std::string& getFileName() const { return _fileName; }

    /// Opens the file, or begins a new one when the name is empty or the file unusable, which is reported
    /// nowhere. Only the first call does anything.
    void init(const std::string& fileName);

    /// Begins a new data set; the path becomes empty.
    void create(const std::string& name);

    /// Loads a file; with `repair` the model is to make what it can of bad data. Fails with
    /// `FileAccessError`, the path unchanged, when the file cannot be opened, and with `DataFormatError` when
    /// the model refuses its data or they cannot be read. The path is the new one then already: continue with
    /// `create`.
    Kes::Result open(const std::string& fileName, bool repair);

    /// Loads data that is in no file, such as a recovery copy; the path, which may be empty, is the one that
    /// the data would be saved to. `isFileNewer`: somebody else has written that file since the data was
    /// made. Fails as `open` does when the data is unusable.
    Kes::Result restore(std::istream& data, const std::string& fileName, bool isFileNewer);

    /// Writes the data to the file and makes it the current one. False, the path unchanged, when the file
    /// cannot be opened, or when there is a keeper and neither what the file holds nor the new bytes can be
    /// written to any second place first. An error while writing is reported only in the log and to the
    /// keeper; the data then counts as changed. A provider that throws leaves the file as it is, and the
    /// exception passes through.
    bool saveAs(const std::string& fileName);

    /// `saveAs` with the current path, which fails for a new file.
    bool save();

    /// Whether the data differs from the bytes of the current file. Always true for a new file, for one that
    /// cannot be opened, for what is no regular file and when the provider throws; always false before
    /// `init`.
    bool isFileChanged() const;

    /// Whether somebody else has written or replaced the current file since it was opened or saved here.
    bool isFileReplaced() const;

    /// The data as it is now, without packing it; see `DataSnapshot`.
    DataSnapshot takeSnapshot() const;

    /// Null: none. Each save calls `onSaving`, then `onSaved`. The keeper outlives the manager or is
    /// replaced.
    void setWorkKeeper(IWorkKeeper* keeper);
    /// The user has decided about the data: calls `IWorkKeeper::onReleased`.
    void release(bool isUnsaved);

protected:
    /// Changes the path. Emits the signal only if the path is another one.
    void _setActualFileName(const std::string& fileName);

private:
    bool _keepWork(const std::string& fileName, const DataSnapshot& snapshot, const std::string& bytes,
                   std::string& beside) const;
    bool _overwrite(const std::string& fileName, const std::string& bytes, const std::string& beside);
    std::unique_ptr<std::istream> _getPresentData() const;
    Kes::Result _load(std::istream& data, bool repair, const std::string& what);
    void _tellKeeper(const std::function<void(IWorkKeeper&)>& tell) const;

    NewData _newData;
    DataProvider _getDataStream;
    DataConsumer _setDataStream;
    std::string _fileName;
    bool _isInited = false;
    IWorkKeeper* _keeper = nullptr;
    /// Of the current file as it was opened or saved last; null when it was neither.
    std::unique_ptr<FileIdentity> _identity;
};

} // namespace KesProgram
