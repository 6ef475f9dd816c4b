// Any bytes behind the signature end in a result, and the content is the one that libarchive finds in the
// whole archive laid out in memory, but for entries that are neither stored nor deflated. Recovering loses
// nothing of it.

#include "Require.h"

#include <KesProgram/archive/ArchiveHelper.h>

#include <archive.h>
#include <archive_entry.h>

#include <locale.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <map>
#include <sstream>
#include <string>

namespace {

using namespace KesProgram;
using Contents = std::map<std::string, std::string>;

Contents readFromMemory(const std::string& zip)
{
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t previous = uselocale(utf8);
    archive* reader = archive_read_new();
    archive_read_support_format_zip(reader);
    Contents contents;
    if (archive_read_open_memory(reader, zip.data(), zip.size()) == ARCHIVE_OK) {
        archive_entry* entry = nullptr;
        while (archive_read_next_header(reader, &entry) == ARCHIVE_OK) {
            errno = 0;
            const char* name = archive_entry_pathname(entry);
            if (!name)
                break;
            auto& content = contents[name];
            content.clear();
            const std::string format = archive_format_name(reader);
            if (!format.ends_with("(uncompressed)") && !format.ends_with("(deflation)"))
                continue;
            std::array<char, 8192> block;
            for (la_ssize_t count; (count = archive_read_data(reader, block.data(), block.size())) > 0;)
                content.append(block.data(), static_cast<std::size_t>(count));
        }
    }
    archive_read_free(reader);
    uselocale(previous);
    return contents;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string tail(reinterpret_cast<const char*>(bytes), size);
    std::istringstream in(ArchiveHelper::PREFIX + tail);
    ArchiveHelper::DataMap data;
    const bool success = ArchiveHelper::unpackStreamToData(in, data, ArchiveHelper::PREFIX);
    require(!success || size > 0, "a signature alone is refused");
    ArchiveHelper::DataMap recovered;
    errno = ENOMEM;
    const bool isRecovered = ArchiveHelper::recoverStreamToData(in, recovered, ArchiveHelper::PREFIX);
    require(isRecovered == (size > 0), "recovering needs a signature with something behind it");
    if (!success)
        return 0;
    Contents contents;
    for (const auto& [name, stream] : data) {
        require(stream && stream->tellg() == 0, "every stream is at its beginning");
        std::ostringstream content;
        content << stream->rdbuf();
        contents[name] = content.str();
        require(recovered.count(name) == 1, "recovering loses no entry");
    }
    require(contents == readFromMemory("PK\3\4" + tail), "the content is the archive's");
    return 0;
}
