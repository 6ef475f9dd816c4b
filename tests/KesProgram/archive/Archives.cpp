#include "Archives.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <utility>

namespace Archives {

namespace Helper = KesProgram::ArchiveHelper;

namespace {

std::string littleEndian(std::uint64_t value, std::size_t size)
{
    std::string bytes;
    for (; size > 0; --size, value >>= 8)
        bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

} // namespace

Helper::DataMap toStreams(const Contents& contents)
{
    Helper::DataMap data;
    for (const auto& [name, content] : contents)
        data[name] = std::make_unique<std::istringstream>(content);
    return data;
}

std::string pack(const Contents& contents)
{
    std::ostringstream out;
    auto data = toStreams(contents);
    return Helper::packDataToStream(out, data, Helper::PREFIX) ? out.str() : std::string();
}

Contents unpack(const std::string& bytes, bool& success)
{
    std::istringstream in(bytes);
    Helper::DataMap data;
    success = Helper::unpackStreamToData(in, data, Helper::PREFIX);
    Contents contents;
    for (const auto& [name, stream] : data) {
        EXPECT_EQ(stream->tellg(), 0) << name;
        std::ostringstream content;
        content << stream->rdbuf();
        contents[name] = std::move(content).str();
    }
    return contents;
}

Contents unpack(const std::string& bytes)
{
    bool success = false;
    auto contents = unpack(bytes, success);
    EXPECT_TRUE(success);
    return contents;
}

std::string toZip(const std::string& bytes)
{
    return "PK\3\4" + bytes.substr(Helper::PREFIX.size());
}

std::string fromZip(const std::string& zip)
{
    return Helper::PREFIX + zip.substr(4);
}

std::string repeatEntry(const std::string& bytes, unsigned times)
{
    const auto zip = toZip(bytes);
    const auto directoryStart = zip.rfind("PK\1\2");
    const auto end = zip.rfind("PK\5\6");
    std::string entries, directory;
    for (unsigned i = 0; i < times; ++i) {
        auto record = zip.substr(directoryStart, end - directoryStart);
        directory += record.replace(42, 4, littleEndian(entries.size(), 4));
        entries += zip.substr(0, directoryStart);
    }
    auto tail = zip.substr(end, 22);
    tail.replace(8, 12,
                 littleEndian(times, 2) + littleEndian(times, 2) + littleEndian(directory.size(), 4) +
                     littleEndian(entries.size(), 4));
    return fromZip(entries + directory + tail);
}

} // namespace Archives
