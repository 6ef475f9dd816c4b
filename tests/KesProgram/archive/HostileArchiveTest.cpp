#include "Archives.h"

#include <algorithm>
#include <cerrno>
#include <random>
#include <utility>

namespace {

using namespace KesProgram;
using Archives::Contents;

constexpr std::size_t mebibyte = 1 << 20;

std::string noise(std::size_t size, unsigned seed)
{
    std::mt19937 random(seed);
    std::string bytes(size, '\0');
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<char>(random() & 0xFF); });
    return bytes;
}

TEST(HostileArchive, CutAnywhereYieldsWhatIsLeftAndWholeBlocksOfTheLastEntry)
{
    const Contents contents{{"1", "first"}, {"2", noise(50000, 2)}, {"3", "last"}};
    const auto bytes = Archives::pack(contents);
    const auto second = bytes.find("PK\3\4", 20);
    const auto third = bytes.rfind("PK\3\4");
    const auto directory = bytes.find("PK\1\2");
    const auto end = bytes.rfind("PK\5\6") + 22;
    for (std::size_t length = 0; length <= end; length += length > 200 && length < third - 200 ? 97 : 1) {
        auto read = Archives::unpack(bytes.substr(0, length), length > ArchiveHelper::PREFIX.size());
        // The directory only repeats what stands before the entries.
        EXPECT_EQ(length >= directory, read == contents) << length;
        EXPECT_TRUE(length < second || read["1"] == "first") << length;
        EXPECT_TRUE(length < third || read["2"] == contents.at("2")) << length;
        EXPECT_TRUE(length >= third || read["2"].size() % 8192 == 0) << length;
        for (const auto& [name, content] : read)
            EXPECT_TRUE(contents.at(name).starts_with(content)) << name << " cut at " << length;
    }
    EXPECT_GE(Archives::unpack(bytes.substr(0, 49000)).at("2").size(), 32768u);
}

TEST(HostileArchive, BombsAreUnpackedUpToTheLimitAndThenRefused)
{
    const auto zeros = Archives::pack({{"zeros", std::string(16 * mebibyte, '\0')}});
    // Entries can be read without the directory behind them.
    const auto start = ArchiveHelper::PREFIX.size();
    const auto entry = zeros.substr(start, zeros.rfind("PK\1\2") - start);
    auto bomb = ArchiveHelper::PREFIX + entry;
    for (int times = 1; times < 4; ++times) {
        EXPECT_EQ(Archives::unpack(bomb).at("zeros").size(), 16 * mebibyte);
        bomb += "PK\3\4" + entry;
    }
    Archives::unpack(bomb, false);
    EXPECT_TRUE(Archives::unpack(zeros + std::string(129 * mebibyte, '\0'), false).empty())
        << "not read at all";
    EXPECT_EQ(Archives::pack({{"zeros", std::string(32 * mebibyte + 1, '\0')}}), "");
}

TEST(HostileArchive, TheLimitsOfAProgramHoldForPackingAndUnpacking)
{
    const Contents contents{{"a", std::string(1000, 'x')}, {"b", std::string(3000, 'y')}};
    const auto bytes = Archives::pack(contents);
    const std::uint64_t whole = 4000 + 2 * (512 + 1);
    const std::pair<ArchiveHelper::ContentLimits, bool> cases[] = {
        {{3000, whole}, true}, {{2999, whole}, false}, {{3000, whole - 1}, false}};
    for (const auto& [limits, fits] : cases) {
        auto streams = Archives::toStreams(contents);
        std::ostringstream out;
        EXPECT_EQ(ArchiveHelper::packDataToStream(out, streams, ArchiveHelper::PREFIX, limits), fits);
        std::istringstream in(bytes);
        ArchiveHelper::DataMap data;
        EXPECT_EQ(ArchiveHelper::unpackStreamToData(in, data, ArchiveHelper::PREFIX, limits), fits);
        EXPECT_EQ(data.size(), fits ? 2u : 1u);
    }
}

/// As ZIP files hold it.
std::string number(std::size_t value, int size)
{
    std::string bytes;
    for (; size > 0; --size, value >>= 8)
        bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

/// What stands in the header of an entry and in the directory alike, up to the length of the name.
std::string rawHeader(unsigned method, unsigned flags, const std::string& name, std::size_t size)
{
    return number(63, 2) + number(flags, 2) + number(method, 2) + number(0x210000, 4) + number(0, 4) +
           number(size, 4) + number(size, 4) + number(name.size(), 2);
}

/// A ZIP entry, without directory and without the first four bytes.
std::string rawEntry(unsigned method, unsigned flags, const std::string& name, const std::string& content)
{
    return rawHeader(method, flags, name, content.size()) + number(0, 2) + name + content;
}

TEST(HostileArchive, EntriesOfOtherMethodsAreEmptyAndTheOthersWhole)
{
    // Asks for a dictionary of nearly 4 GiB.
    const std::string lzma("\x09\x04\x05\0\x5d\xff\xff\xff\xff", 9);
    for (const unsigned method : {1u, 9u, 12u, 14u, 93u, 95u, 98u, 99u}) {
        const auto bytes = ArchiveHelper::PREFIX + rawEntry(method, 0, "other", lzma + noise(50, 1)) +
                           "PK\3\4" + rawEntry(0, 0, "stored", "");
        EXPECT_EQ(Archives::unpack(bytes), (Contents{{"other", ""}, {"stored", ""}})) << method;
    }
}

/// A stream that counts what is read of it, and leaves behind that an allocation has failed.
class WatchedBytes : public std::stringbuf {
public:
    using std::stringbuf::stringbuf;

    std::size_t read = 0;

protected:
    std::streamsize xsgetn(char* bytes, std::streamsize count) override
    {
        const auto got = std::stringbuf::xsgetn(bytes, count);
        read += static_cast<std::size_t>(got);
        errno = ENOMEM;
        return got;
    }
};

TEST(HostileArchive, EntriesThatOverlapAreNotUnpackedAgainAndAgain)
{
    // Each entry holds all that come behind it.
    constexpr unsigned count = 1000;
    const std::string name = "entry";
    std::string entries = noise(60000, 4);
    std::vector<std::size_t> sizes;
    for (unsigned i = 0; i < count; ++i) {
        sizes.push_back(entries.size());
        entries = "PK\3\4" + rawHeader(0, 0, name, entries.size()) + number(0, 2) + name + entries;
    }
    const std::size_t header = (entries.size() - sizes.front()) / count;
    std::string directory;
    for (unsigned i = 0; i < count; ++i)
        directory += "PK\1\2" + number(63, 2) + rawHeader(0, 0, name, sizes[i]) + number(0, 12) +
                     number((count - 1 - i) * header, 4) + name;
    const auto end = "PK\5\6" + number(0, 4) + number(count, 2) + number(count, 2) +
                     number(directory.size(), 4) + number(entries.size(), 4) + number(0, 2);
    WatchedBytes bytes(ArchiveHelper::PREFIX + entries.substr(4) + directory + end);
    std::istream in(&bytes);
    ArchiveHelper::DataMap data;
    (void)ArchiveHelper::unpackStreamToData(in, data, ArchiveHelper::PREFIX);
    EXPECT_EQ(data.count(name), 1u);
    EXPECT_LT(bytes.read, 30 * bytes.str().size());
}

TEST(HostileArchive, ANameThatCannotBeConvertedDoesNotEndTheProcessAfterAFailedAllocation)
{
    // Long enough to be read just before the header behind it.
    const std::string first(200000, 'x');
    for (const auto* name : {"\xd0", "cut \xd0", "x\xe2\x82", "x\xf0\x90", "\xff"}) {
        WatchedBytes bytes(ArchiveHelper::PREFIX + rawEntry(0, 0, "first", first) + "PK\3\4" +
                           rawEntry(0, 0, name, ""));
        std::istream in(&bytes);
        ArchiveHelper::DataMap data;
        EXPECT_TRUE(ArchiveHelper::unpackStreamToData(in, data, ArchiveHelper::PREFIX));
        EXPECT_EQ(data.count("first"), 1u);
    }
}

TEST(HostileArchive, RecoveringLeavesOutWhatIsTooLongAndWhatIsTornWhereItHasTheWhole)
{
    const auto bytes = Archives::pack({{"a", "text"}, {"b", std::string(2000, 'x')}, {"c", "end"}});
    EXPECT_EQ(Archives::recover(bytes, {1000, 5000}), (Contents{{"a", "text"}, {"c", "end"}}));
    auto twice = Archives::pack({{"name 1", "whole"}, {"name 2", noise(300, 2)}});
    for (std::size_t at = 0; (at = twice.find("name 2", at)) != std::string::npos;)
        twice[at + 5] = '1';
    twice[twice.rfind("PK\3\4") + 100] ^= 1;
    EXPECT_EQ(Archives::recover(twice), (Contents{{"name 1", "whole"}}));
}

TEST(HostileArchive, RecoveringFindsEveryEntryButTheOneThatAFlippedByteHits)
{
    const Contents contents{
        {"first", "text"}, {"noise", noise(300, 2)}, {"packed", std::string(400, 'x')}, {"last", "end"}};
    const auto bytes = Archives::pack(contents);
    const auto end = bytes.rfind("PK\5\6") + 22;
    for (std::size_t at = ArchiveHelper::PREFIX.size(); at < end; ++at) {
        for (const char flip : {'\x01', '\x80', '\xff'}) {
            auto damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ flip);
            std::size_t whole = 0;
            for (const auto& entry : Archives::recover(damaged))
                whole += static_cast<std::size_t>(std::ranges::count(contents, entry));
            EXPECT_GE(whole, 3u) << "byte " << at << " changed by " << int(flip);
        }
    }
}

TEST(HostileArchive, RecoveringFindsEachOfVeryManyEntries)
{
    Contents contents;
    for (int i = 0; i < 6000; ++i)
        contents[std::to_string(i)];
    const auto bytes = Archives::pack(contents);
    ASSERT_LT(bytes.size(), mebibyte);
    // Without its directory, and with a fault near the beginning.
    auto damaged = bytes.substr(0, bytes.find("PK\1\2"));
    damaged[damaged.find("PK\3\4", 100) + 26] = '\xff';
    EXPECT_GE(Archives::recover(damaged).size(), 5999u);
}

} // namespace
