#pragma once

#include <KesProgram/archive/ArchiveHelper.h>

#include <gtest/gtest.h>

/// Archives as plain strings, for the tests of the container.
namespace Archives {

namespace Helper = KesProgram::ArchiveHelper;

using Contents = std::map<std::string, std::string>;

/// Fresh streams for the contents.
inline Helper::DataMap toStreams(const Contents& contents)
{
    Helper::DataMap data;
    for (const auto& [name, content] : contents)
        data[name] = std::make_unique<std::istringstream>(content);
    return data;
}

/// The archive of the contents behind the current signature; empty when packing fails.
inline std::string pack(const Contents& contents)
{
    std::ostringstream out;
    auto data = toStreams(contents);
    return Helper::packDataToStream(out, data, Helper::PREFIX) ? out.str() : std::string();
}

inline Contents toContents(const Helper::DataMap& data)
{
    Contents contents;
    for (const auto& [name, stream] : data) {
        EXPECT_EQ(stream->tellg(), 0) << name;
        std::ostringstream content;
        content << stream->rdbuf();
        contents[name] = std::move(content).str();
    }
    return contents;
}

/// What can be unpacked from the bytes; whether they are accepted has to be known.
inline Contents unpack(const std::string& bytes, bool success = true)
{
    std::istringstream in(bytes);
    Helper::DataMap data;
    EXPECT_EQ(Helper::unpackStreamToData(in, data, Helper::PREFIX), success);
    return toContents(data);
}

/// What a repair finds in the bytes, which it has to accept.
inline Contents recover(const std::string& bytes, const Helper::ContentLimits& limits = {})
{
    std::istringstream in(bytes);
    Helper::DataMap data;
    EXPECT_TRUE(Helper::recoverStreamToData(in, data, Helper::PREFIX, limits));
    return toContents(data);
}

} // namespace Archives
