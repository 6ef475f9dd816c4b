#include "Archives.h"

#include <KesProgram/archive/ArchiveHelper.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <sstream>
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
    const auto zeros = Archives::pack({{"zeros", std::string(64 * mebibyte, '\0')}});
    // Entries can be read without the directory behind them.
    const auto start = ArchiveHelper::PREFIX.size();
    const auto entry = zeros.substr(start, zeros.rfind("PK\1\2") - start);
    auto bomb = ArchiveHelper::PREFIX + entry;
    for (int times = 1; times < 17; ++times) {
        EXPECT_TRUE(times != 5 || Archives::unpack(bomb).at("zeros").size() == 64 * mebibyte);
        bomb += "PK\3\4" + entry;
    }
    EXPECT_TRUE(Archives::unpack(bomb, false).empty());
}

TEST(HostileArchive, NoiseAndArchivesWithNoiseInThemEndInAResult)
{
    const auto whole = Archives::pack({{"a", noise(300, 1)}, {"b", "text"}}).substr(0, 900);
    const auto start = ArchiveHelper::PREFIX.size();
    for (unsigned seed = 0; seed < 3000; ++seed) {
        auto bytes = seed % 3 == 0 ? ArchiveHelper::PREFIX + noise(seed % 500 + 1, seed) : whole;
        std::mt19937 random(seed);
        for (unsigned changes = seed % 3 * 4; changes > 0; --changes)
            bytes[start + random() % (whole.size() - start)] = static_cast<char>(random());
        EXPECT_LE(Archives::unpack(bytes).size(), 2u) << seed;
    }
}

TEST(HostileArchive, WhatCouldNotBeOpenedIsNotPacked)
{
    ArchiveHelper::DataMap data;
    data["endless"] = std::make_unique<std::ifstream>("/dev/zero");
    std::ostringstream out;
    EXPECT_FALSE(ArchiveHelper::packDataToStream(out, data, ArchiveHelper::PREFIX));
    EXPECT_EQ(out.str(), "");
}

} // namespace
