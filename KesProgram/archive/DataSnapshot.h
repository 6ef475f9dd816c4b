#pragma once

#include <KesCommon/Export.h>
#include <KesProgram/archive/ArchiveHelper.h>

#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <string>

namespace KesProgram {

/// A program's data at one moment, taken quickly and packed later on another thread: a provider that packs
/// with `ArchiveHelper::packDataToStream` does not pack at once, which would take most of the time. A value
/// that is cheap to copy. Any thread.
class KES_EXPORT DataSnapshot {
public:
    using Provider = std::function<std::unique_ptr<std::istream>()>;

    /// Without data.
    DataSnapshot();
    /// Calls the provider on the calling thread. Without data when it returns no stream. Exceptions of the
    /// provider reach the caller.
    static DataSnapshot take(const Provider& provider);

    bool isEmpty() const { return !_data; }
    /// Whether the archives would be the same, byte for byte.
    bool operator==(const DataSnapshot& other) const;

    /// The bytes that the provider's stream would have given; empty without data. Throws when an archive
    /// cannot be packed after all, for want of memory.
    std::string pack() const;

private:
    struct Data {
        /// Of a program that makes its bytes in another way than packing them once.
        std::string bytes;
        std::string header;
        std::map<std::string, std::string> entries;
        ArchiveHelper::ContentLimits limits;

        bool operator==(const Data&) const = default;
    };

    explicit DataSnapshot(Data data);

    std::shared_ptr<const Data> _data;
};

} // namespace KesProgram
