#include <support/FailingCalls.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace KesTest {

namespace {

using Kind = FailingCalls::Kind;

// Plain memory: calls come before the constructors of this file and after its destructors.
std::atomic<Kind> armedKind{Kind::None};
std::atomic<bool> isNoting{false};
std::atomic<bool> isFromNowOn{false};
std::atomic<int> callsLeft{0};
std::atomic<int> failed{0};
std::atomic<int> allocations{0};
char below[PATH_MAX];
char logPath[PATH_MAX];

void copyPath(char (&to)[PATH_MAX], const char* from)
{
    std::snprintf(to, sizeof(to), "%s", from ? from : "");
}

/// Without the functions of this file, and without memory.
void note(Kind kind, const char* what)
{
    if (!*logPath)
        return;
    char line[PATH_MAX + 32];
    const int size =
        std::snprintf(line, sizeof(line), "%s %s\n", FailingCalls::names[static_cast<int>(kind)], what);
    const long file = syscall(SYS_openat, AT_FDCWD, logPath, O_WRONLY | O_APPEND | O_CREAT, 0600);
    syscall(SYS_write, file, line, static_cast<std::size_t>(size));
    syscall(SYS_close, file);
}

int errorOf(Kind kind)
{
    switch (kind) {
    case Kind::Open:
        return EMFILE;
    case Kind::Write:
        return ENOSPC;
    case Kind::Thread:
        return EAGAIN;
    default:
        return EIO;
    }
}

__attribute__((constructor)) void armFromEnvironment()
{
    const char* kind = std::getenv("KES_FAIL_KIND");
    if (!kind)
        return;
    copyPath(logPath, std::getenv("KES_FAIL_LOG"));
    const char* at = std::getenv("KES_FAIL_AT");
    const char* folder = std::getenv("KES_FAIL_BELOW");
    for (std::size_t i = 0; i < std::size(FailingCalls::names); ++i)
        if (std::strcmp(kind, FailingCalls::names[i]) == 0)
            FailingCalls::arm(static_cast<Kind>(i), at ? std::atoi(at) : 0, std::getenv("KES_FAIL_ON"),
                              folder ? folder : "");
    isNoting = !at || std::atoi(at) == 0;
}

/// There are too many of them for a line each.
__attribute__((destructor)) void noteAllocations()
{
    char number[16];
    std::snprintf(number, sizeof(number), "%d", allocations.load());
    if (isNoting && allocations > 0)
        note(Kind::Allocation, number);
}

bool isBelow(const char* path)
{
    if (!path)
        return false;
    for (const char* folder = below; *folder;) {
        const std::size_t size = std::strcspn(folder, ":");
        if (std::strncmp(path, folder, size) == 0)
            return true;
        folder += size + (folder[size] ? 1 : 0);
    }
    return false;
}

bool failsAt(Kind kind, const char* path)
{
    return (armedKind == kind || isNoting) && isBelow(path) && FailingCalls::fails(kind, path);
}

bool failsOn(Kind kind, int file)
{
    if (armedKind != kind && !isNoting)
        return false;
    const int before = errno;
    char link[32], path[PATH_MAX];
    std::snprintf(link, sizeof(link), "/proc/self/fd/%d", file);
    const auto size = readlink(link, path, sizeof(path) - 1);
    errno = before;
    if (size < 0)
        return false;
    path[size] = 0;
    return failsAt(kind, path);
}

template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int endsWith(bool isToFail, int result)
{
    if (isToFail)
        errno = EIO;
    return isToFail ? -1 : result;
}

bool wantsGLib(const void* caller)
{
    Dl_info info;
    return dladdr(caller, &info) != 0 && info.dli_fname && std::strstr(info.dli_fname, "/libglib-");
}

} // namespace

void FailingCalls::arm(Kind kind, int at, bool isFromThenOn, const std::string& folder)
{
    copyPath(below, folder.c_str());
    callsLeft = at;
    failed = 0;
    isFromNowOn = isFromThenOn;
    armedKind = kind;
}

void FailingCalls::disarm()
{
    armedKind = Kind::None;
}

int FailingCalls::count()
{
    return failed;
}

bool FailingCalls::fails(Kind kind, const char* what)
{
    if (isNoting && kind == Kind::Allocation)
        ++allocations;
    else if (isNoting)
        note(kind, what);
    if (isNoting || armedKind != kind)
        return false;
    const int left = callsLeft.fetch_sub(1) - 1;
    if (left > 0 || (left < 0 && !isFromNowOn))
        return false;
    ++failed;
    note(kind, what);
    errno = errorOf(kind);
    return true;
}

} // namespace KesTest

using KesTest::endsWith;
using KesTest::failsAt;
using KesTest::failsOn;
using KesTest::next;
using Kind = KesTest::FailingCalls::Kind;

// The system's functions, under all the names that libraries call them by.
#pragma GCC visibility push(default)
extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    static const auto real = next<int(const char*, int, ...)>("open");
    return failsAt(Kind::Open, path) ? -1 : real(path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));

int openat(int folder, const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const auto mode = va_arg(arguments, mode_t);
    va_end(arguments);
    static const auto real = next<int(int, const char*, int, ...)>("openat");
    return failsAt(Kind::Open, path) ? -1 : real(folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) __attribute__((alias("openat")));

FILE* fopen(const char* path, const char* mode)
{
    static const auto real = next<FILE*(const char*, const char*)>("fopen");
    return failsAt(Kind::Open, path) ? nullptr : real(path, mode);
}
FILE* fopen64(const char* path, const char* mode) __attribute__((alias("fopen")));

int fsync(int file)
{
    static const auto real = next<int(int)>("fsync");
    return failsOn(Kind::Sync, file) ? -1 : real(file);
}
int fdatasync(int file) __attribute__((alias("fsync")));

int __open_2(const char* path, int flags)
{
    return open(path, flags, 0);
}

ssize_t read(int file, void* bytes, size_t size)
{
    static const auto real = next<ssize_t(int, void*, size_t)>("read");
    return failsOn(Kind::Read, file) ? -1 : real(file, bytes, size);
}

/// A disk that is full from now on still takes a part.
ssize_t write(int file, const void* bytes, size_t size)
{
    static const auto real = next<ssize_t(int, const void*, size_t)>("write");
    if (!failsOn(Kind::Write, file))
        return real(file, bytes, size);
    return KesTest::isFromNowOn && KesTest::failed == 1 && size > 1 ? real(file, bytes, size / 2) : -1;
}

ssize_t writev(int file, const iovec* parts, int count)
{
    static const auto real = next<ssize_t(int, const iovec*, int)>("writev");
    return failsOn(Kind::Write, file) ? -1 : real(file, parts, count);
}

int rename(const char* from, const char* to) noexcept
{
    static const auto real = next<int(const char*, const char*)>("rename");
    return failsAt(Kind::Rename, to) ? -1 : real(from, to);
}

/// The descriptor has gone all the same, as it has when the system's own call fails.
int close(int file)
{
    static const auto real = next<int(int)>("close");
    const bool isToFail = failsOn(Kind::Close, file);
    return endsWith(isToFail, real(file));
}

int fclose(FILE* file)
{
    static const auto real = next<int(FILE*)>("fclose");
    const bool isToFail = failsOn(Kind::Close, fileno(file));
    return endsWith(isToFail, real(file));
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*work)(void*),
                   void* data) noexcept
{
    static const auto real =
        next<int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*)>("pthread_create");
    if (!KesTest::wantsGLib(__builtin_return_address(0)) &&
        KesTest::FailingCalls::fails(Kind::Thread, "thread"))
        return EAGAIN;
    return real(thread, attributes, work, data);
}

} // extern "C"
#pragma GCC visibility pop
