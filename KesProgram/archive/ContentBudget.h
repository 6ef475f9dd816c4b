#pragma once

#include <KesProgram/archive/ArchiveHelper.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace KesProgram {

/// Counts what one archive holds against its limits, alike for packing and unpacking.
/// Internal to archives. One thread at a time.
class ContentBudget {
public:
    explicit ContentBudget(const ArchiveHelper::ContentLimits& limits) : _limits(limits), _left(limits.total)
    {}

    /// Begins an entry. False when the entry itself, without its content, is too much.
    bool takeEntry(const std::string& name)
    {
        _leftOfEntry = _limits.entry;
        return _take(512 + name.size());
    }
    /// False when the bytes of the entry are too much; from then on nothing fits.
    bool take(std::uint64_t bytes)
    {
        _isExceeded = _isExceeded || bytes > _leftOfEntry;
        _leftOfEntry -= _isExceeded ? _leftOfEntry : bytes;
        return _take(bytes);
    }

    /// How many bytes the present entry may still have.
    std::uint64_t getLeft() const { return std::min(_left, _leftOfEntry); }
    bool isExceeded() const { return _isExceeded; }

private:
    bool _take(std::uint64_t bytes)
    {
        _isExceeded = _isExceeded || bytes > _left;
        _left -= _isExceeded ? _left : bytes;
        return !_isExceeded;
    }

    const ArchiveHelper::ContentLimits _limits;
    std::uint64_t _left;
    std::uint64_t _leftOfEntry = 0;
    bool _isExceeded = false;
};

} // namespace KesProgram
