#pragma once

#include <KesProgram/archive/ArchiveHelper.h>

#include <map>
#include <ostream>
#include <string>
#include <string_view>

namespace KesProgram {

/// While it lives, `ArchiveHelper::packDataToStream` packs nothing on its thread: it puts a mark into the
/// stream and leaves header and entries here, to be packed later on another thread. Does not nest.
/// Internal to archives. One thread.
class DeferredPacking {
public:
    /// What stands in the stream in place of the archive.
    static constexpr std::string_view mark = "kes: an archive that is still to be packed";

    DeferredPacking();
    ~DeferredPacking();
    DeferredPacking(const DeferredPacking&) = delete;
    DeferredPacking& operator=(const DeferredPacking&) = delete;

    /// The one that lives on this thread; null.
    static DeferredPacking* getActive();

    /// Reads the streams as packing does. False for what cannot be packed.
    bool take(std::ostream& out, ArchiveHelper::DataMap& data, const std::string& header,
              const ArchiveHelper::ContentLimits& limits);

    int getCount() const { return _count; }
    std::string& getHeader() { return _header; }
    const ArchiveHelper::ContentLimits& getLimits() const { return _limits; }
    std::map<std::string, std::string>& getEntries() { return _entries; }

private:
    int _count = 0;
    std::string _header;
    ArchiveHelper::ContentLimits _limits;
    std::map<std::string, std::string> _entries;
};

} // namespace KesProgram
