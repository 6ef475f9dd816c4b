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

Contents unpack(const std::string& bytes, bool success)
{
    std::istringstream in(bytes);
    Helper::DataMap data;
    EXPECT_EQ(Helper::unpackStreamToData(in, data, Helper::PREFIX), success);
    Contents contents;
    for (const auto& [name, stream] : data) {
        EXPECT_EQ(stream->tellg(), 0) << name;
        std::ostringstream content;
        content << stream->rdbuf();
        contents[name] = std::move(content).str();
    }
    return contents;
}

} // namespace Archives
