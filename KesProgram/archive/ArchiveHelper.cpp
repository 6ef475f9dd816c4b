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
#include <ostream>
#include <set>
#include <sstream>
#include <utility>

namespace KesProgram::ArchiveHelper {

namespace {

bool pack(std::ostream& out, const std::string& header, const std::function<bool(ZipWriter&)>& addEntries)
{
    ChunkedBuffer zip;
    {
        std::ostream stream(&zip);
        ZipWriter writer(stream);
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

bool matches(std::istream& in, const std::string& header)
{
    std::string start(header.size(), '\0');
    in.read(start.data(), static_cast<std::streamsize>(start.size()));
    // A stream shorter than the signature leaves failbit behind, and no seek works with it.
    in.clear();
    return start == header;
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

bool packDataToStream(std::ostream& out, DataMap& data, const std::string& header)
{
    if (auto* deferred = DeferredPacking::getActive())
        return deferred->take(out, data, header);
    return pack(out, header, [&data](ZipWriter& writer) {
        return std::all_of(data.begin(), data.end(), [&writer](const auto& entry) {
            return entry.second && writer.add(entry.first, *entry.second);
        });
    });
}

bool unpackStreamToData(std::istream& in, DataMap& data, const std::string& header)
{
    in.clear();
    in.seekg(0);
    if (!matches(in, header)) {
        in.seekg(0);
        return false;
    }
    in.seekg(0, std::ios::end);
    const std::streamoff total = in.tellg();
    const auto start = static_cast<std::streamoff>(header.size());
    // The four bytes put back open as a ZIP archive even with nothing behind them. A signature that ends in
    // zeros matches a stream shorter than itself.
    if (total <= start)
        return false;

    ZipReader reader(in, start, total);
    if (!reader.isOpen())
        return false;
    while (const auto name = reader.next()) {
        // An earlier entry of the name goes first: both together would be too much memory.
        data.erase(*name);
        auto content = reader.readContent();
        if (!content)
            break;
        data.emplace(*name, std::make_unique<std::stringstream>(std::move(*content)));
    }
    return !reader.isOverLimit();
}

bool packFolderToStream(std::ostream& out, const std::string& folder, const std::string& header)
{
    std::set<std::string> names;
    try {
        names = listRegularFiles(folder);
    } catch (const Glib::FileError&) {
        return false;
    }
    // One file is open at a time: a folder may hold more files than a process may have open.
    return pack(out, header, [&](ZipWriter& writer) {
        return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
            auto file = Kes::openInputFileUTF8Name(Glib::build_filename(folder, name), std::ios::binary);
            return writer.add(name, file);
        });
    });
}

bool unpackStreamToFolder(std::istream& in, const std::string& folder, const std::string& header)
{
    DataMap data;
    if (!unpackStreamToData(in, data, header))
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
