#pragma once

#include <KesCommon/Export.h>

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <istream>
#include <map>
#include <memory>
#include <string>

struct archive;

/// The container of a program's archive file: named streams of bytes packed as a ZIP archive whose first four
/// bytes are replaced by a signature. docs/archive-format.md shows the bytes, and what damage costs. Packing
/// and unpacking fail with the result false; bad data throws nothing. A name is 1 to 65535 bytes without NUL
/// and does not end in "/" or "\"; it is read back unchanged in every locale, except that "\" becomes "/"
/// unless it has a "/" too. Equal data gives equal bytes. Any thread, one call per stream at a time; the
/// calling thread's locale is switched meanwhile.
namespace KesProgram::ArchiveHelper {

/// Entry names and the streams with their content. Reading starts at each stream's present position.
using DataMap = std::map<std::string, std::unique_ptr<std::istream>>;

/// The signature of the present version of archives: 71 D1 94 33 3F 31 E2 80 B0 50 E2 84 A2 64 37.
static const std::string PREFIX = "qє3?1‰P™d7";
/// The signature of the version before it; only the last byte differs.
static const std::string OUTDATED_PREFIX = "qє3?1‰P™d6";

/// How many bytes an archive may hold unpacked. Packing refuses more as well, so that what was saved can be
/// opened: give both the same limits. `total` counts all contents, the names and 512 bytes for each entry.
struct ContentLimits {
    std::uint64_t entry = std::uint64_t{32} << 20;
    std::uint64_t total = std::uint64_t{64} << 20;

    bool operator==(const ContentLimits&) const = default;
};

/// Writes all entries, in the order of their names. The streams are read to their end, so the next call needs
/// fresh ones; one that has failed gives an empty entry. False, with `out` untouched, for an empty map, a
/// null stream, an impossible name or too much data; false, with part of the archive written, when `out`
/// fails.
KES_EXPORT bool packDataToStream(std::ostream& out, DataMap& data, const std::string& header,
                                 const ContentLimits& limits = {});

/// Reads the archive from the beginning of `in`, which must be able to seek, into streams positioned at their
/// beginning; an entry replaces what the map holds under its name. False for another signature (`in` then
/// stands at its beginning), for a signature with nothing behind it and for more than the limits. A damaged
/// archive is no failure: the map then holds what could be read, the last entry perhaps in part.
KES_EXPORT bool unpackStreamToData(std::istream& in, DataMap& data, const std::string& header,
                                   const ContentLimits& limits = {});

/// Reads a damaged archive by its directory and by the header of each entry alone: one changed byte damages
/// one entry at most. False for another signature, or one alone. What is beyond the limits is left out.
KES_EXPORT bool recoverStreamToData(std::istream& in, DataMap& data, const std::string& header,
                                    const ContentLimits& limits = {});

/// Packs the regular files directly inside the folder (links to files included), each under its bare name;
/// one that cannot be read is empty. False as in `packDataToStream` and when the folder cannot be listed.
KES_EXPORT bool packFolderToStream(std::ostream& out, const std::string& folder, const std::string& header,
                                   const ContentLimits& limits = {});

/// Writes every entry to a file inside the folder, which must exist. Names are joined to it as they stand,
/// "../" included: only for archives that the program has made. False as in `unpackStreamToData` and when a
/// file cannot be opened; files written before stay. An error while writing an opened file goes unnoticed.
KES_EXPORT bool unpackStreamToFolder(std::istream& in, const std::string& folder, const std::string& header,
                                     const ContentLimits& limits = {});

/// libarchive's callbacks on a `std::ostream*`; one that has failed gives -1, on closing -30 (fatal).
KES_EXPORT ssize_t ostream_write_callback(archive* writer, void* stream, const void* bytes,
                                          std::size_t count);

KES_EXPORT int ostream_close_callback(archive* writer, void* stream);

} // namespace KesProgram::ArchiveHelper
