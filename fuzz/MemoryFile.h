#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// A file that lies in memory only and has a path, for parsers that read files.
class MemoryFile {
public:
    MemoryFile(const std::uint8_t* bytes, std::size_t size) : _file(memfd_create("fuzz", MFD_CLOEXEC))
    {
        if (_file < 0 || write(_file, bytes, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    ~MemoryFile() { close(_file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string getPath() const { return "/proc/self/fd/" + std::to_string(_file); }

private:
    int _file;
};
