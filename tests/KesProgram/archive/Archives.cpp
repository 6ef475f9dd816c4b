#include "Archives.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

namespace Archives {

namespace Helper = KesProgram::ArchiveHelper;

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

namespace {

Contents toContents(const Helper::DataMap& data)
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

} // namespace

Contents unpack(const std::string& bytes, bool success)
{
    std::istringstream in(bytes);
    Helper::DataMap data;
    EXPECT_EQ(Helper::unpackStreamToData(in, data, Helper::PREFIX), success);
    return toContents(data);
}

Contents recover(const std::string& bytes, const Helper::ContentLimits& limits)
{
    std::istringstream in(bytes);
    Helper::DataMap data;
    EXPECT_TRUE(Helper::recoverStreamToData(in, data, Helper::PREFIX, limits));
    return toContents(data);
}

} // namespace Archives
