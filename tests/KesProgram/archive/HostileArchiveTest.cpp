#include "Archives.h"

#include <KesProgram/archive/ArchiveHelper.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <istream>
#include <random>
#include <sstream>
#include <streambuf>
#include <string>

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
        bool success = false;
        auto read = Archives::unpack(bytes.substr(0, length), success);
        EXPECT_EQ(success, length > ArchiveHelper::PREFIX.size()) << length;
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

TEST(HostileArchive, RandomAndDamagedBytesEndInAResult)
{
    const auto bytes =
        Archives::pack({{"1", "first"}, {"Имя", std::string(3000, 'x')}, {"3", noise(500, 2)}});
    const auto end = bytes.rfind("PK\5\6") + 22;
    std::mt19937 random(3);
    for (unsigned i = 0; i < 2000; ++i) {
        Archives::unpack(ArchiveHelper::PREFIX + noise(1 + random() % 400, i));
        auto damaged = bytes;
        for (auto times = 1 + random() % 8; times > 0; --times)
            damaged[15 + random() % (end - 15)] = static_cast<char>(random() & 0xFF);
        Archives::unpack(damaged);
    }
}

TEST(HostileArchive, TheLaterOfTwoEntriesOfANameWins)
{
    auto zip = Archives::toZip(Archives::pack({{"name-1", "earlier"}, {"name-2", "later"}}));
    for (auto at = zip.find("name-2"); at != std::string::npos; at = zip.find("name-2"))
        zip[at + 5] = '1';
    EXPECT_EQ(Archives::unpack(Archives::fromZip(zip)), (Contents{{"name-1", "later"}}));
}

TEST(HostileArchive, BombsAreUnpackedUpToTheLimitAndThenRefused)
{
    const auto zeros = Archives::pack({{"zeros", std::string(64 * mebibyte, '\0')}});
    ASSERT_LT(zeros.size(), 100000u);
    EXPECT_EQ(Archives::unpack(Archives::repeatEntry(zeros, 5)).at("zeros").size(), 64 * mebibyte);
    bool success = true;
    EXPECT_TRUE(Archives::unpack(Archives::repeatEntry(zeros, 17), success).empty());
    EXPECT_FALSE(success);
}

TEST(HostileArchive, ADirectoryThatLiesAboutSizesIsBelievedOnlyAsAHint)
{
    auto zip = Archives::toZip(Archives::pack({{"a", "content"}}));
    const auto record = zip.rfind("PK\1\2");
    zip.replace(record + 24, 4, "\xFE\xFF\xFF\xFF");
    const auto read = Archives::unpack(Archives::fromZip(zip));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_LT(read.begin()->second.capacity(), 100u);
}

TEST(HostileArchive, WhatCouldNotBeOpenedIsNotPacked)
{
    /// Endless zeros.
    class Zeros : public std::streambuf {
        int_type underflow() override
        {
            setg(_block, _block, _block + sizeof(_block));
            return 0;
        }
        char _block[8192]{};
    } zeros;
    ArchiveHelper::DataMap data;
    data["endless"] = std::make_unique<std::istream>(&zeros);
    std::ostringstream out;
    EXPECT_FALSE(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX));
    EXPECT_EQ(out.str(), "");
}

TEST(HostileArchive, AStreamThatCannotBeReadOrMovedIsRefused)
{
    /// A device that gives the signature and then fails.
    class Broken : public std::streambuf {
    public:
        Broken() : _bytes(ArchiveHelper::PREFIX)
        {
            setg(_bytes.data(), _bytes.data(), _bytes.data() + _bytes.size());
        }

    private:
        int_type underflow() override { throw std::runtime_error("read error"); }
        pos_type seekoff(off_type offset, std::ios::seekdir way, std::ios::openmode) override
        {
            return way == std::ios::end ? pos_type(1000) : pos_type(offset);
        }
        pos_type seekpos(pos_type position, std::ios::openmode) override { return position; }
        std::string _bytes;
    } broken;
    std::istream failing(&broken);
    std::istream none(nullptr);
    ArchiveHelper::DataMap data;
    EXPECT_FALSE(ArchiveHelper::unpackStreamToData(failing, data, ArchiveHelper::PREFIX));
    EXPECT_FALSE(ArchiveHelper::unpackStreamToData(none, data, ArchiveHelper::PREFIX));
    EXPECT_TRUE(data.empty());
}

} // namespace
