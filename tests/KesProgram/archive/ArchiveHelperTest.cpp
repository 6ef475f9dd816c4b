#include "Archives.h"

#include <clocale>
#include <fstream>
#include <locale.h>

namespace {

using namespace KesProgram;
using Archives::Contents;

TEST(ArchiveHelper, EveryNameAndContentComesBackInAnyLocaleFromTheSameBytes)
{
    const Contents contents{{"Уставки и план.xml", "2"},
                            {"测试 \xF0\x9F\x94\x8C", std::string("\0\xFF\r\n\x1A", 5)},
                            {"\xD0\xB8\xCC\x86", "decomposed"},
                            {"\xED\xE5\xF2", "not UTF-8"},
                            {"/absolute", std::string(100000, 'x')},
                            {"../above", ""},
                            {" a:b*?\"<>|", "9"},
                            {std::string(65535, 'n'), "long"}};
    const auto bytes = Archives::pack(contents);
    ASSERT_TRUE(bytes.starts_with("\x71\xD1\x94\x33\x3F\x31\xE2\x80\xB0\x50\xE2\x84\xA2\x64\x37"));
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"C", "C.UTF-8", "ru_RU.UTF-8"}) {
        if (!std::setlocale(LC_ALL, name))
            continue;
        const auto threadLocale = uselocale(nullptr);
        EXPECT_TRUE(Archives::pack(contents) == bytes) << name;
        EXPECT_TRUE(Archives::unpack(bytes) == contents) << name;
        EXPECT_EQ(uselocale(nullptr), threadLocale);
    }
    std::setlocale(LC_ALL, previous.c_str());
    EXPECT_EQ(Archives::unpack(Archives::pack({{"a\\b", "1"}})), (Contents{{"a/b", "1"}}));
}

TEST(ArchiveHelper, PackingRefusesWhatCannotBeStoredAndLeavesTheOutputAlone)
{
    const Contents refused[] = {{},
                                {{"a", "1"}, {"", "1"}},
                                {{"a", "1"}, {std::string(65536, 'n'), "2"}},
                                {{std::string("a\0b", 3), "1"}},
                                {{"folder\\", "1"}}};
    for (const auto& contents : refused) {
        std::ostringstream out;
        auto data = Archives::toStreams(contents);
        EXPECT_FALSE(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX));
        EXPECT_EQ(out.str(), "");
    }
    std::ofstream full("/dev/full");
    auto data = Archives::toStreams({{"a", "1"}});
    EXPECT_FALSE(ArchiveHelper::packDataToStream(full, data, ArchiveHelper::PREFIX));
}

TEST(ArchiveHelper, ReadsStreamsFromWhereTheyStandAndFailedOnesAsEmpty)
{
    auto data = Archives::toStreams({{"failed", "abc"}, {"started", "abc"}, {"whole", "abc"}});
    data["started"]->get();
    data["failed"]->setstate(std::ios::failbit);
    std::ostringstream out;
    ASSERT_TRUE(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX));
    EXPECT_EQ(Archives::unpack(out.str()), (Contents{{"failed", ""}, {"started", "bc"}, {"whole", "abc"}}));
}

TEST(ArchiveHelper, AnotherSignatureLeavesTheStreamForTheNextAttempt)
{
    auto data = Archives::toStreams({{"a", "1"}});
    std::stringstream stream;
    ASSERT_TRUE(ArchiveHelper::packDataToStream(stream, data, ArchiveHelper::OUTDATED_PREFIX));
    EXPECT_EQ(stream.str().at(14), '6');
    ArchiveHelper::DataMap read;
    for (const auto& other : {ArchiveHelper::PREFIX, std::string(100000, 'x')}) {
        EXPECT_FALSE(ArchiveHelper::unpackStreamToData(stream, read, other));
        EXPECT_TRUE(stream.good() && stream.tellg() == 0 && read.empty());
    }
    EXPECT_TRUE(ArchiveHelper::unpackStreamToData(stream, read, ArchiveHelper::OUTDATED_PREFIX));
}

} // namespace
