#pragma once

#include <KesProgram/archive/ArchiveHelper.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace KesProgram {

/// Counts what one archive holds against its limits, alike for packing and unpacking. An entry costs its name
/// and 512 bytes beside its content, so that very many empty entries are refused as well. Internal to
/// archives; a new one for each reading or writing. One thread at a time.
class ContentBudget {
public:
    explicit ContentBudget(const ArchiveHelper::ContentLimits& limits) : _limits(limits), _left(limits.total)
    {}

    /// Begins an entry, which has a whole limit of its own again. False when the entry itself, without its
    /// content, is too much.
    bool takeEntry(const std::string& name)
    {
        _leftOfEntry = _limits.entry;
        return _take(512 + name.size(), _left);
    }
    /// False when the bytes are too much; from then on nothing fits into the entry, or into the archive,
    /// whichever is full.
    bool take(std::uint64_t bytes) { return _take(bytes, _leftOfEntry) && _take(bytes, _left); }

    /// How many bytes the present entry may still have; 0 before the first `takeEntry`.
    std::uint64_t getLeft() const { return std::min(_left, _leftOfEntry); }
    /// Whether anything has been refused so far; an archive that just fits is used up, not exceeded.
    bool isExceeded() const { return _isExceeded; }
    /// Whether there is no room for another entry.
    bool isUsedUp() const { return _left == 0; }

private:
    /// What does not fit uses up all that is left.
    bool _take(std::uint64_t bytes, std::uint64_t& left)
    {
        const bool fits = bytes <= left;
        _isExceeded = _isExceeded || !fits;
        left = fits ? left - bytes : 0;
        return fits;
    }

    const ArchiveHelper::ContentLimits _limits;
    std::uint64_t _left;
    std::uint64_t _leftOfEntry = 0;
    bool _isExceeded = false;
};

} // namespace KesProgram
