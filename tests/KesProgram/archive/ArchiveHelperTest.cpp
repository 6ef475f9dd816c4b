#include "Archives.h"

#include <KesProgram/archive/ArchiveHelper.h>

#include <archive.h>
#include <gtest/gtest.h>

#include <clocale>
#include <locale.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace KesProgram;
using Archives::Contents;

/// Names that other programs and systems make.
const Contents oddNames{{"settings.xml", "1"},
                        {"Уставки и план.xml", "2"},
                        {"测试 \xF0\x9F\x94\x8C", "3"},
                        {"\xD0\xB8\xCC\x86", "decomposed"},
                        {"\xD0\xB9", "composed"},
                        {"\xED\xE5\xF2", "not UTF-8"},
                        {"folder/inner", "4"},
                        {"/absolute", "5"},
                        {"../above", "6"},
                        {" ", "8"},
                        {"a:b*?\"<>|", "9"},
                        {std::string(65535, 'n'), "long"}};

class LocaleScope {
public:
    explicit LocaleScope(const char* name) : _previous(std::setlocale(LC_ALL, nullptr))
    {
        _isSet = std::setlocale(LC_ALL, name) != nullptr;
    }
    ~LocaleScope() { std::setlocale(LC_ALL, _previous.c_str()); }
    bool isSet() const { return _isSet; }

private:
    const std::string _previous;
    bool _isSet;
};

TEST(ArchiveHelper, SignaturesHaveTheirBytes)
{
    EXPECT_EQ(ArchiveHelper::PREFIX, "\x71\xD1\x94\x33\x3F\x31\xE2\x80\xB0\x50\xE2\x84\xA2\x64\x37");
    EXPECT_EQ(ArchiveHelper::OUTDATED_PREFIX, ArchiveHelper::PREFIX.substr(0, 14) + '6');
}

TEST(ArchiveHelper, EveryNameAndContentComesBackInAnyLocaleFromTheSameBytes)
{
    auto contents = oddNames;
    contents["empty"];
    contents["binary"] = std::string("\0\xFF\r\n\x1A", 5);
    contents["large"] = std::string(100000, 'x');
    const auto bytes = Archives::pack(contents);
    ASSERT_FALSE(bytes.empty());
    for (const char* name : {"C", "C.UTF-8", "ru_RU.UTF-8", "POSIX"}) {
        const LocaleScope scope(name);
        if (!scope.isSet())
            continue;
        const auto threadLocale = uselocale(nullptr);
        EXPECT_TRUE(Archives::pack(contents) == bytes) << name;
        const auto read = Archives::unpack(bytes);
        for (const auto& [entry, content] : contents)
            EXPECT_TRUE(read.count(entry) == 1 && read.at(entry) == content) << entry.substr(0, 40);
        EXPECT_EQ(read.size(), contents.size());
        EXPECT_EQ(uselocale(nullptr), threadLocale);
    }
    EXPECT_EQ(Archives::unpack(Archives::pack({{"a\\b", "1"}})), (Contents{{"a/b", "1"}}));
}

TEST(ArchiveHelper, PackingRefusesWhatCannotBeStoredAndLeavesTheOutputAlone)
{
    const Contents refused[] = {{},
                                {{"", "1"}},
                                {{"a", "1"}, {std::string(65536, 'n'), "2"}},
                                {{std::string("a\0b", 3), "1"}},
                                {{"folder/", "1"}},
                                {{"folder\\", "1"}}};
    for (const auto& contents : refused) {
        std::ostringstream out;
        auto data = Archives::toStreams(contents);
        EXPECT_FALSE(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX));
        EXPECT_EQ(out.str(), "");
    }
    std::ostringstream out;
    ArchiveHelper::DataMap data;
    data["null"];
    EXPECT_FALSE(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX));
}

TEST(ArchiveHelper, PackingTellsOfAFailingOutput)
{
    class Limited : public std::streambuf {
    public:
        explicit Limited(int room) : _room(room) {}
        int_type overflow(int_type character) override
        {
            return _room-- > 0 ? character : traits_type::eof();
        }

    private:
        int _room;
    };
    const auto size = static_cast<int>(Archives::pack({{"a", "1"}}).size());
    for (const int room : {0, 14, 15, 100, size - 1, size}) {
        Limited buffer(room);
        std::ostream out(&buffer);
        auto data = Archives::toStreams({{"a", "1"}});
        EXPECT_EQ(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX), room == size) << room;
    }
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
    ArchiveHelper::DataMap read;
    for (const auto& other : {ArchiveHelper::PREFIX, std::string(100000, 'x')}) {
        stream.setstate(std::ios::failbit);
        EXPECT_FALSE(ArchiveHelper::unpackStreamToData(stream, read, other));
        EXPECT_TRUE(stream.good());
        EXPECT_EQ(stream.tellg(), 0);
    }
    EXPECT_TRUE(read.empty());
    EXPECT_TRUE(ArchiveHelper::unpackStreamToData(stream, read, ArchiveHelper::OUTDATED_PREFIX));
    EXPECT_EQ(read.size(), 1u);
}

TEST(ArchiveHelper, AnySignatureWillDoButNotAlone)
{
    const std::string zeros("sig\0\0\0", 6);
    for (const auto& header : {std::string(), zeros, std::string("PK"), std::string(20000, 's')}) {
        auto data = Archives::toStreams({{"a", "1"}});
        std::stringstream stream;
        ASSERT_TRUE(ArchiveHelper::packDataToStream(stream, data, header));
        ArchiveHelper::DataMap read;
        EXPECT_TRUE(ArchiveHelper::unpackStreamToData(stream, read, header));
        EXPECT_EQ(read.size(), 1u);
        std::istringstream alone(header);
        EXPECT_FALSE(ArchiveHelper::unpackStreamToData(alone, read, header));
    }
    // A signature that ends in zeros matches a shorter stream; there is nothing behind it.
    std::istringstream shorter("sig");
    ArchiveHelper::DataMap read;
    EXPECT_FALSE(ArchiveHelper::unpackStreamToData(shorter, read, zeros));
}

TEST(ArchiveHelper, UnpackingReplacesAndKeepsWhatTheMapHolds)
{
    auto data = Archives::toStreams({{"a", "old"}, {"b", "kept"}});
    std::istringstream in(Archives::pack({{"a", "new"}}));
    ASSERT_TRUE(ArchiveHelper::unpackStreamToData(in, data, ArchiveHelper::PREFIX));
    std::string a, b;
    *data["a"] >> a;
    *data["b"] >> b;
    EXPECT_EQ(a + b, "newkept");
}

TEST(ArchiveHelper, CallbacksReportTheStreamsState)
{
    std::ostringstream out;
    std::ostream* const client = &out;
    EXPECT_EQ(ArchiveHelper::ostream_write_callback(nullptr, client, "abc", 3), 3);
    EXPECT_EQ(ArchiveHelper::ostream_close_callback(nullptr, client), ARCHIVE_OK);
    EXPECT_EQ(out.str(), "abc");
    out.setstate(std::ios::badbit);
    EXPECT_EQ(ArchiveHelper::ostream_write_callback(nullptr, client, "abc", 3), -1);
    EXPECT_EQ(ArchiveHelper::ostream_close_callback(nullptr, client), ARCHIVE_FATAL);
}

} // namespace
