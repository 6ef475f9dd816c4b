#include <KesCommon/FileLock.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#include <utility>

namespace Kes {

namespace {

constexpr mode_t onlyOwner = 0600;
constexpr std::chrono::milliseconds betweenTries{5};

/// The previous owner may have removed the file between its opening and its locking.
bool isStillAt(const std::string& path, int file)
{
    struct stat opened, present;
    return fstat(file, &opened) == 0 && stat(path.c_str(), &present) == 0 &&
           opened.st_ino == present.st_ino && opened.st_dev == present.st_dev;
}

} // namespace

FileLock::FileLock(std::string path, int file) : _path(std::move(path)), _file(file) {}

FileLock::FileLock(FileLock&& other) noexcept
    : _path(std::move(other._path)), _file(std::exchange(other._file, -1))
{}

FileLock& FileLock::operator=(FileLock&& other) noexcept
{
    _release();
    _path = std::move(other._path);
    _file = std::exchange(other._file, -1);
    return *this;
}

FileLock::~FileLock()
{
    _release();
}

std::optional<FileLock> FileLock::tryTake(const std::string& path)
{
    bool isHeld = false;
    return _take(path, isHeld);
}

std::optional<FileLock> FileLock::takeWithin(const std::string& path, std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    for (;;) {
        bool isHeld = false;
        auto lock = _take(path, isHeld);
        if (!isHeld || std::chrono::steady_clock::now() >= end)
            return lock;
        std::this_thread::sleep_for(betweenTries);
    }
}

std::optional<FileLock> FileLock::_take(const std::string& path, bool& isHeld)
{
    for (;;) {
        const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, onlyOwner);
        if (file < 0)
            return std::nullopt;
        FileLock lock(path, file);
        if (flock(file, LOCK_EX | LOCK_NB) != 0) {
            isHeld = errno == EWOULDBLOCK;
            return std::nullopt;
        }
        if (isStillAt(path, file))
            return lock;
    }
}

void FileLock::removeFile()
{
    // While the lock is held: whoever waits for it then sees that its file has gone.
    if (_file >= 0)
        unlink(_path.c_str());
    _release();
}

void FileLock::_release()
{
    if (_file >= 0)
        close(std::exchange(_file, -1));
}

} // namespace Kes
