#include <KesProgram/recovery/RecoveryStore.h>

#include <KesCommon/FileSystem.h>

#include <glib.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>
#include <utility>

namespace KesProgram {

namespace {

namespace fs = std::filesystem;

constexpr int onlyOwner = 0600;
constexpr unsigned onlyOwnersFolder = 0700;
constexpr std::chrono::milliseconds longestLook{100};
constexpr std::size_t uuidSize = 36;
constexpr auto kinds = {RecoveryStore::Kind::Work, RecoveryStore::Kind::Former};

std::string makeUuid()
{
    const std::unique_ptr<char, decltype(&g_free)> text(g_uuid_string_random(), g_free);
    return text.get();
}

Kes::Result writeDurably(const std::string& path, const std::string& content)
{
    GError* error = nullptr;
    const auto flags =
        static_cast<GFileSetContentsFlags>(G_FILE_SET_CONTENTS_CONSISTENT | G_FILE_SET_CONTENTS_DURABLE);
    if (g_file_set_contents_full(path.c_str(), content.data(), static_cast<gssize>(content.size()), flags,
                                 onlyOwner, &error))
        return true;
    const std::string text = error->message;
    g_error_free(error);
    return Kes::Result::failure(text);
}

bool isSaved(const RecoveryCopy& copy)
{
    std::error_code error;
    return !copy.fileName.empty() && fs::file_size(copy.fileName, error) == copy.bytes.size() &&
           Kes::readWholeFile(copy.fileName) == copy.bytes;
}

void removeFile(const std::string& path)
{
    std::error_code ignored;
    fs::remove(path, ignored);
}

} // namespace

RecoveryStore::RecoveryStore(std::string folder) : _folder(std::move(folder)) {}

RecoveryStore::~RecoveryStore()
{
    _release();
}

Kes::Result RecoveryStore::write(Kind kind, const RecoveryCopy& copy)
{
    const std::string content = copy.toFile();
    std::lock_guard lock(_mutex);
    if (!_begin())
        return Kes::Result::failure("cannot lock " + _folder);
    return writeDurably(_path(_session, kind), content);
}

void RecoveryStore::remove(Kind kind)
{
    std::lock_guard lock(_mutex);
    if (_lock)
        removeFile(_path(_session, kind));
}

std::optional<RecoveryCopy> RecoveryStore::read(Kind kind) const
{
    std::lock_guard lock(_mutex);
    return _lock ? RecoveryCopy::fromFile(Kes::readWholeFile(_path(_session, kind))) : std::nullopt;
}

void RecoveryStore::setAside(Kind kind)
{
    std::lock_guard lock(_mutex);
    std::error_code ignored;
    if (_lock)
        fs::rename(_path(_session, kind), _path(makeUuid(), kind), ignored);
}

std::vector<LostWork> RecoveryStore::findLost()
{
    std::lock_guard guard(_mutex);
    std::vector<LostWork> found;
    for (const auto& session : _listSessions()) {
        auto lock = _tryTake(session);
        if (!lock)
            continue;
        const auto work = RecoveryCopy::fromFile(Kes::readWholeFile(_path(session, Kind::Work)));
        const auto former = RecoveryCopy::fromFile(Kes::readWholeFile(_path(session, Kind::Former)));
        if (work && isSaved(*work)) {
            for (const auto kind : kinds)
                removeFile(_path(session, kind));
        } else if (work) {
            found.emplace_back(std::move(*lock), session, _path(session, Kind::Work), *work);
            continue;
        } else if (former && !isSaved(*former)) {
            found.emplace_back(std::move(*lock), session, _path(session, Kind::Former), *former);
            continue;
        } else if (former) {
            removeFile(_path(session, Kind::Former));
        }
        _removeWhenEmpty(session, std::move(*lock));
    }
    std::stable_sort(found.begin(), found.end(), [](const LostWork& one, const LostWork& other) {
        return one.getCopy().time > other.getCopy().time;
    });
    return found;
}

void RecoveryStore::adopt(LostWork work)
{
    std::lock_guard lock(_mutex);
    _release();
    _session = std::move(work._session);
    _lock = std::move(work._lock);
}

void RecoveryStore::takeOver(RecoveryStore& shared, const std::string& program)
{
    std::scoped_lock guard(_mutex, shared._mutex);
    for (const auto& session : shared._listSessions()) {
        auto theirs = shared._tryTake(session);
        if (!theirs || shared._findProgram(session) != program || !_makeFolder())
            continue;
        if (auto own = _tryTake(session)) {
            std::error_code ignored;
            for (const auto kind : kinds)
                fs::rename(shared._path(session, kind), _path(session, kind), ignored);
            _removeWhenEmpty(session, std::move(*own));
            shared._removeWhenEmpty(session, std::move(*theirs));
        }
    }
}

void RecoveryStore::removeOutdated(std::chrono::system_clock::time_point now)
{
    std::lock_guard guard(_mutex);
    // The file's own time: a broken copy has no other.
    const auto oldest = std::chrono::file_clock::from_sys(now) - longestStay;
    for (const auto& session : _listSessions()) {
        auto lock = _tryTake(session);
        if (!lock)
            continue;
        for (const auto kind : kinds) {
            std::error_code error;
            const auto time = fs::last_write_time(_path(session, kind), error);
            if (!error && time < oldest)
                removeFile(_path(session, kind));
        }
        _removeWhenEmpty(session, std::move(*lock));
    }
}

std::string RecoveryStore::_path(const std::string& session, Kind kind) const
{
    return _folder + session + (kind == Kind::Work ? ".work" : ".former");
}

std::string RecoveryStore::_lockPath(const std::string& session) const
{
    return _folder + session + ".lock";
}

/// Of every file that begins with the name of one, so that an unfinished temporary file counts as well.
std::vector<std::string> RecoveryStore::_listSessions() const
{
    std::set<std::string> sessions;
    std::error_code error;
    for (fs::directory_iterator file(_folder, error), end; !error && file != end; file.increment(error)) {
        const std::string session = file->path().filename().string().substr(0, uuidSize);
        if (g_uuid_string_is_valid(session.c_str()) && session != _session)
            sessions.insert(session);
    }
    return {sessions.begin(), sessions.end()};
}

/// The lock of an owner that lives no more; with it goes what the owner was just writing.
std::optional<Kes::FileLock> RecoveryStore::_tryTake(const std::string& session) const
{
    auto lock = Kes::FileLock::tryTake(_lockPath(session));
    if (!lock)
        return lock;
    std::error_code error;
    std::vector<fs::path> unfinished;
    for (fs::directory_iterator file(_folder, error), end; !error && file != end; file.increment(error)) {
        const std::string name = file->path().filename().string();
        const auto extension = name.starts_with(session) ? name.substr(uuidSize) : std::string();
        if (extension.starts_with(".work.") || extension.starts_with(".former."))
            unfinished.push_back(file->path());
    }
    for (const auto& path : unfinished)
        removeFile(path);
    return lock;
}

bool RecoveryStore::_hasCopies(const std::string& session) const
{
    std::error_code error;
    return std::any_of(kinds.begin(), kinds.end(),
                       [&](Kind kind) { return fs::exists(_path(session, kind), error); });
}

/// Empty when no copy can be read.
std::string RecoveryStore::_findProgram(const std::string& session) const
{
    for (const auto kind : kinds)
        if (const auto copy = RecoveryCopy::fromFile(Kes::readWholeFile(_path(session, kind))))
            return copy->program;
    return {};
}

void RecoveryStore::_removeWhenEmpty(const std::string& session, Kes::FileLock lock) const
{
    if (!_hasCopies(session))
        lock.removeFile();
}

void RecoveryStore::_release()
{
    if (_lock)
        _removeWhenEmpty(_session, std::move(*_lock));
    _lock.reset();
    _session.clear();
}

bool RecoveryStore::_makeFolder() const
{
    return g_mkdir_with_parents(_folder.c_str(), static_cast<int>(onlyOwnersFolder)) == 0;
}

bool RecoveryStore::_begin()
{
    std::error_code error;
    // Somebody may have cleared the folder meanwhile.
    if (_lock && fs::exists(_lockPath(_session), error))
        return true;
    _lock.reset();
    if (!_makeFolder())
        return false;
    const std::string session = makeUuid();
    // Another instance that looks for lost work may have seen the new file first.
    _lock = Kes::FileLock::takeWithin(_lockPath(session), longestLook);
    if (_lock)
        _session = session;
    return _lock.has_value();
}

} // namespace KesProgram
