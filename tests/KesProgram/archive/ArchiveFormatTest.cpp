#include "Archives.h"
#include "support/TemporaryHome.h"

#include <KesProgram/archive/ArchiveHelper.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace KesProgram;
using Archives::Contents;

const auto root = std::filesystem::path(__FILE__).parent_path() / "../../..";

/// The bytes of a hexadecimal dump as hexdump -C makes it: a line "*" stands for repetitions of the one
/// before, and the last line tells the length.
std::string bytesOfDump(const std::string& text)
{
    std::string bytes, last;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        static const std::regex pattern("^([0-9a-f]{8})((?: +[0-9a-f]{2})*)(?: +\\|.*)?$");
        std::smatch match;
        if (!std::regex_match(line, match, pattern))
            continue;
        for (const auto offset = std::stoul(match[1], nullptr, 16); bytes.size() < offset && !last.empty();)
            bytes += last;
        last.clear();
        std::istringstream pairs(match[2]);
        for (std::string pair; pairs >> pair;)
            last += static_cast<char>(std::stoul(pair, nullptr, 16));
        bytes += last;
    }
    return bytes;
}

TEST(ArchiveFormat, TheDocumentedExampleIsWhatIsWrittenAndRead)
{
    const Contents contents{{"settings", "Is=1.5\n"}, {"Ток", ""}};
    const auto bytes = bytesOfDump(KesTest::readFile(root / "docs/archive-format.md"));
    ASSERT_EQ(bytes.size(), 10240 + ArchiveHelper::PREFIX.size() - 4);
    EXPECT_TRUE(Archives::pack(contents) == bytes);
    EXPECT_EQ(Archives::unpack(bytes), contents);
}

TEST(ArchiveFormat, AnotherReaderFindsTheEntriesOnceTheFourBytesAreBack)
{
    KesTest::TemporaryHome home;
    KesTest::writeFile(home.file("a.zip"),
                       Archives::toZip(Archives::pack(
                           {{"settings.xml", "<settings/>"}, {"Ток", std::string(100000, 'x')}})));
    KesTest::writeFile(
        home.file("read.py"),
        "import sys, zipfile\n"
        "archive = zipfile.ZipFile(sys.argv[1])\n"
        "good = archive.testzip() is None and archive.namelist() == ['settings.xml', "
        "'\\u0422\\u043e\\u043a']\n"
        "entry = archive.infolist()[1]\n"
        "good = good and archive.read(entry) == b'x' * 100000 and entry.compress_size < 1000\n"
        "good = good and entry.external_attr >> 16 == 0o100644 and entry.date_time == (1980, 1, 1, 0, 0, 0)\n"
        "sys.exit(0 if good else 1)\n");
    EXPECT_EQ(std::system(("python3 " + home.file("read.py") + " " + home.file("a.zip")).c_str()), 0);
}

TEST(ArchiveFormat, DamageYieldsWhatIsDocumented)
{
    const Contents contents{{"1", "first"}, {"2", std::string(3000, 'x')}, {"3", "last"}};
    const auto bytes = Archives::pack(contents);
    const auto second = bytes.find("PK\3\4", 20);
    const auto directory = bytes.find("PK\1\2");
    const auto secondInDirectory = bytes.find("PK\1\2", directory + 4);
    const auto end = bytes.rfind("PK\5\6");
    const struct {
        const char* damage;
        std::size_t position;
        Contents expected;
    } cases[] = {{"end record", end, contents},
                 {"directory", directory, {}},
                 {"offset in the directory", secondInDirectory + 42, {{"1", "first"}}},
                 {"header", second, {{"1", "first"}}},
                 {"content", second + 80, {{"1", "first"}, {"2", ""}, {"3", "last"}}},
                 {"checksum", secondInDirectory + 16, {{"1", "first"}, {"2", ""}, {"3", "last"}}}};
    for (const auto& [damage, position, expected] : cases) {
        auto damaged = bytes;
        damaged[position] ^= 1;
        EXPECT_EQ(Archives::unpack(damaged), expected) << damage;
    }
}

} // namespace
