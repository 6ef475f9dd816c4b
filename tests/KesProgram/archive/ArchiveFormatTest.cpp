#include "Archives.h"
#include "support/TemporaryHome.h"

#include <algorithm>

namespace {

using namespace KesProgram;
using Archives::Contents;

const auto root = std::filesystem::path(__FILE__).parent_path() / "../../..";

/// The bytes of a hexadecimal dump; where it leaves out lines there are zeros.
std::string bytesOfDump(const std::string& text)
{
    std::string bytes;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.find_first_not_of("0123456789abcdef") != std::min<std::size_t>(line.size(), 8))
            continue;
        bytes.resize(std::stoul(line, nullptr, 16));
        std::istringstream pairs(line.substr(8));
        for (unsigned byte = 0; pairs >> std::hex >> byte;)
            bytes += static_cast<char>(byte);
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
    auto twice = Archives::pack({{"name 1", "earlier"}, {"name 2", "later"}});
    for (std::size_t at = 0; (at = twice.find("name 2", at)) != std::string::npos;)
        twice[at + 5] = '1';
    EXPECT_EQ(Archives::unpack(twice), (Contents{{"name 1", "later"}}));
}

} // namespace
