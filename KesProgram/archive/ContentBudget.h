#pragma once

#include <KesProgram/archive/ArchiveHelper.h>

#include <cstdint>
#include <string>

namespace KesProgram {

/// Counts what one archive holds against `ArchiveHelper::maxContentSize`, alike for packing and unpacking.
/// Internal to archives. One thread at a time.
class ContentBudget {
public:
    /// False when the entry itself, without its content, is too much.
    bool takeEntry(const std::string& name) { return take(512 + name.size()); }
    /// False when the bytes are too much; from then on nothing fits.
    bool take(std::uint64_t bytes)
    {
        _isExceeded = _isExceeded || bytes > _left;
        _left = _isExceeded ? 0 : _left - bytes;
        return !_isExceeded;
    }

    std::uint64_t getLeft() const { return _left; }
    bool isExceeded() const { return _isExceeded; }

private:
    std::uint64_t _left = ArchiveHelper::maxContentSize;
    bool _isExceeded = false;
};

} // namespace KesProgram
