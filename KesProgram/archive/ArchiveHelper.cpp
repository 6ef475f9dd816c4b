#include <KesProgram/archive/ArchiveHelper.h>

#include <KesCommon/FileStream.h>
#include <KesProgram/archive/detail/ChunkedBuffer.h>
#include <KesProgram/archive/detail/DeferredPacking.h>
#include <KesProgram/archive/detail/ZipReader.h>
#include <KesProgram/archive/detail/ZipWriter.h>

#include <archive.h>
#include <glibmm/fileutils.h>
#include <glibmm/miscutils.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <optional>
#include <ostream>
#include <set>
#include <sstream>
#include <utility>
#include <vector>

namespace KesProgram::ArchiveHelper {

namespace {

bool pack(std::ostream& out, const std::string& header, const ContentLimits& limits,
          const std::function<bool(ZipWriter&)>& addEntries)
{
    ChunkedBuffer zip;
    {
        std::ostream stream(&zip);
        ZipWriter writer(stream, limits);
        if (!writer.isOpen() || !addEntries(writer) || !writer.finish())
            return false;
    }
    // Without entries there is no local header: the ZIP starts with the end of its directory.
    if (!zip.startsWith(zipSignature))
        return false;
    if (!out.write(header.data(), static_cast<std::streamsize>(header.size())))
        return false;
    return zip.moveTo(out, zipSignature.size());
}

std::streamoff sizeOf(std::istream& in)
{
    in.clear();
    in.seekg(0, std::ios::end);
    return in.tellg();
}

bool matches(std::istream& in, const std::string& header)
{
    std::string start(header.size(), '\0');
    in.read(start.data(), static_cast<std::streamsize>(start.size()));
    // A stream shorter than the signature leaves failbit behind, and no seek works with it.
    in.clear();
    return start == header;
}

struct Entry {
    std::string name;
    std::string content;
    bool isWhole;
};

using TakeEntry = std::function<void(Entry)>;

/// Where the ZIP begins with its fifth byte, when the stream has the signature and something behind it.
/// Leaves the stream at its beginning for another signature.
std::optional<std::streamoff> findZip(std::istream& in, const std::string& header,
                                      const ContentLimits& limits)
{
    in.clear();
    in.seekg(0);
    if (!matches(in, header)) {
        in.seekg(0);
        return std::nullopt;
    }
    const auto start = static_cast<std::streamoff>(header.size());
    // The four bytes put back open as a ZIP archive even with nothing behind them. A signature that ends in
    // zeros matches a stream shorter than itself.
    const std::streamoff size = sizeOf(in) - start;
    // What fits into the limits is not made twice as long by its headers and the filling; a longer directory
    // would fill the memory before its first entry is read.
    const bool isTooLong = size > 65536 && static_cast<std::uint64_t>(size - 65536) / 2 > limits.total;
    return size > 0 && !isTooLong ? std::optional(start) : std::nullopt;
}

bool readEntry(ZipReader& reader, const TakeEntry& take)
{
    const auto name = reader.isOpen() ? reader.next() : std::nullopt;
    auto content = name ? reader.readContent() : std::nullopt;
    if (content)
        take({*name, std::move(*content), reader.isContentWhole()});
    return content.has_value();
}

/// False when the archive cannot be opened or holds more than it may.
bool readByDirectory(std::istream& in, std::streamoff start, const ContentLimits& limits,
                     const TakeEntry& take)
{
    ContentBudget budget(limits);
    ZipReader reader(in, start, sizeOf(in), budget, ZipReader::Search::Directory);
    while (readEntry(reader, take)) {
    }
    return reader.isOpen() && !budget.isExceeded();
}

/// The places behind the marks with which headers of entries begin, from the first one on, whose mark is
/// missing. No more than an archive of this size can have, or is worth seconds: noise may be full of them.
std::vector<std::streamoff> findHeaders(std::istream& in, std::streamoff start)
{
    // A header, a name, an empty content and its sizes.
    constexpr std::streamoff smallestEntry = 48;
    const auto most =
        static_cast<std::size_t>(std::min<std::streamoff>(1 + (sizeOf(in) - start) / smallestEntry, 65536));
    std::vector<std::streamoff> found{start};
    in.clear();
    in.seekg(start);
    std::string block;
    const std::size_t overlap = zipSignature.size() - 1;
    for (std::streamoff at = start; found.size() < most && in;) {
        const std::size_t kept = block.size();
        block.resize(kept + 65536);
        in.read(block.data() + kept, 65536);
        block.resize(kept + static_cast<std::size_t>(in.gcount()));
        for (auto mark = block.find(zipSignature); mark != std::string::npos && found.size() < most;
             mark = block.find(zipSignature, mark + 1))
            found.push_back(at + static_cast<std::streamoff>(mark + zipSignature.size()));
        const std::size_t done = block.size() - std::min(overlap, block.size());
        block.erase(0, done);
        at += static_cast<std::streamoff>(done);
    }
    return found;
}

/// One reading for each header: a damaged one would end a reading of all.
void readByHeaders(std::istream& in, std::streamoff start, const ContentLimits& limits, const TakeEntry& take)
{
    ContentBudget budget(limits);
    const auto end = sizeOf(in);
    for (const auto header : findHeaders(in, start)) {
        ZipReader reader(in, header, end, budget, ZipReader::Search::Headers);
        readEntry(reader, take);
        if (budget.isUsedUp())
            return;
    }
}

std::set<std::string> listRegularFiles(const std::string& folder)
{
    std::set<std::string> names;
    for (const std::string& name : Glib::Dir(folder))
        if (name != "." && name != ".." &&
            Glib::file_test(Glib::build_filename(folder, name), Glib::FILE_TEST_IS_REGULAR))
            names.insert(name);
    return names;
}

} // namespace

bool packDataToStream(std::ostream& out, DataMap& data, const std::string& header,
                      const ContentLimits& limits)
{
    if (auto* deferred = DeferredPacking::getActive())
        return deferred->take(out, data, header, limits);
    return pack(out, header, limits, [&data](ZipWriter& writer) {
        return std::all_of(data.begin(), data.end(), [&writer](const auto& entry) {
            return entry.second && writer.add(entry.first, *entry.second);
        });
    });
}

bool unpackStreamToData(std::istream& in, DataMap& data, const std::string& header,
                        const ContentLimits& limits)
{
    const auto start = findZip(in, header, limits);
    return start && readByDirectory(in, *start, limits, [&data](Entry entry) {
               data[entry.name] = std::make_unique<std::stringstream>(std::move(entry.content));
           });
}

bool recoverStreamToData(std::istream& in, DataMap& data, const std::string& header,
                         const ContentLimits& limits)
{
    const auto start = findZip(in, header, limits);
    if (!start)
        return false;
    std::set<std::string> whole;
    const auto take = [&](Entry entry) {
        if (entry.isWhole)
            whole.insert(entry.name);
        else if (whole.contains(entry.name))
            return;
        data[entry.name] = std::make_unique<std::stringstream>(std::move(entry.content));
    };
    readByHeaders(in, *start, limits, take);
    // Where both found an entry whole, the directory's word counts.
    readByDirectory(in, *start, limits, take);
    return true;
}

bool packFolderToStream(std::ostream& out, const std::string& folder, const std::string& header,
                        const ContentLimits& limits)
{
    std::set<std::string> names;
    try {
        names = listRegularFiles(folder);
    } catch (const Glib::FileError&) {
        return false;
    }
    // One file is open at a time: a folder may hold more files than a process may have open.
    return pack(out, header, limits, [&](ZipWriter& writer) {
        return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
            auto file = Kes::openInputFileUTF8Name(Glib::build_filename(folder, name), std::ios::binary);
            return writer.add(name, file);
        });
    });
}

bool unpackStreamToFolder(std::istream& in, const std::string& folder, const std::string& header,
                          const ContentLimits& limits)
{
    DataMap data;
    if (!unpackStreamToData(in, data, header, limits))
        return false;
    for (const auto& [name, content] : data) {
        auto file = Kes::openOutputFileUTF8Name(Glib::build_filename(folder, name), std::ios::binary);
        if (!file)
            return false;
        file << content->rdbuf();
    }
    return true;
}

ssize_t ostream_write_callback(archive*, void* stream, const void* bytes, std::size_t count)
{
    auto& out = *static_cast<std::ostream*>(stream);
    out.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(count));
    return out.fail() ? -1 : static_cast<ssize_t>(count);
}

int ostream_close_callback(archive*, void* stream)
{
    auto& out = *static_cast<std::ostream*>(stream);
    out.flush();
    return out.fail() ? ARCHIVE_FATAL : ARCHIVE_OK;
}

} // namespace KesProgram::ArchiveHelper
