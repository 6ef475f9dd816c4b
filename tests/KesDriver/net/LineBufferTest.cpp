#include <KesDriver/net/LineBuffer.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

TEST(LineBuffer, GivesWholeLinesOfTextUpToTheFirstThatIsNone)
{
    using Lines = std::vector<std::string>;
    const struct {
        std::string bytes;
        Lines lines;
        bool isBroken = false;
    } cases[] = {
        {"one\ntwo\r\n\n\r\nthr", {"one", "two", "", ""}},
        {"\xD0\x9A\t.\n", {"\xD0\x9A\t."}},
        // At most ten bytes besides the end of the line,
        {"0123456789\n0123456789\r\n", {"0123456789", "0123456789"}},
        {"ok\n01234567890\nno\n", {"ok"}, true},
        {"ok\n0123456789012", {"ok"}, true},
        // no control characters, and UTF-8.
        {"ok\n\x01\nno\n", {"ok"}, true},
        {"a\rb\n", {}, true},
        {"\x7F\n", {}, true},
        {std::string("a\0b\n", 4), {}, true},
        {"\xD0\n", {}, true},
        {"\xFF\n", {}, true},
    };
    for (const auto& [bytes, lines, isBroken] : cases)
        for (const std::size_t part : {std::size_t{1}, std::size_t{4}, bytes.size()}) {
            SCOPED_TRACE(bytes + " in parts of " + std::to_string(part));
            KesDriver::LineBuffer buffer(10);
            Lines taken;
            std::string line;
            for (std::size_t begin = 0; begin < bytes.size(); begin += part) {
                buffer.append(std::string_view(bytes).substr(begin, part));
                while (buffer.take(line))
                    taken.push_back(line);
            }
            EXPECT_EQ(taken, lines);
            EXPECT_EQ(buffer.isBroken(), isBroken);
        }
}

} // namespace
