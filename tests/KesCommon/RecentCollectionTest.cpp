#include <KesCommon/RecentCollection.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Recent : public Kes::RecentCollection {
public:
    explicit Recent(unsigned int capacity) : RecentCollection(capacity)
    {
        signalChanged.connect([this] { ++changes; });
    }
    int changes = 0;
    std::string refused;

protected:
    bool _canAdd(const std::string& path) override { return path != refused; }
};

TEST(RecentCollection, keepsTheNewestLastAndEachPathOnce)
{
    Recent recent(3);
    EXPECT_EQ(recent.getLast(), "");
    for (const char* path : {"/a", "/b", "/c"})
        EXPECT_TRUE(recent.tryAdd(path));
    EXPECT_TRUE(recent.tryAdd("/a"));
    EXPECT_THAT(recent.getCollection(), ElementsAre("/b", "/c", "/a"));
    EXPECT_TRUE(recent.tryAdd("/d"));
    EXPECT_THAT(recent.getCollection(), ElementsAre("/c", "/a", "/d"));
    EXPECT_EQ(recent.getLast(), "/d");
    EXPECT_EQ(recent.changes, 5);
}

TEST(RecentCollection, tellsOnlyRealChanges)
{
    Recent recent(3);
    recent.refused = "/no";
    EXPECT_TRUE(recent.tryAdd("/a"));
    EXPECT_TRUE(recent.tryAdd("/a"));
    EXPECT_FALSE(recent.tryAdd("/no"));
    EXPECT_FALSE(recent.tryAdd(""));
    recent.deserialize("/a\n");
    EXPECT_EQ(recent.changes, 1);
    Recent none(0);
    EXPECT_FALSE(none.tryAdd("/a"));
    EXPECT_THAT(none.getCollection(), IsEmpty());
}

TEST(RecentCollection, readsBackEveryByteAPathMayHold)
{
    std::string all = "/";
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    Recent recent(5);
    for (const auto& path : {all, std::string("/Ток и\nнапряжение.kes"), std::string(" %41 ")})
        ASSERT_TRUE(recent.tryAdd(path));
    const auto text = recent.serialize();
    for (const char c : text)
        EXPECT_TRUE(c == '\n' || (c > ' ' && c < 127 && c != '<' && c != '&')) << int(c);
    Recent other(5);
    other.deserialize("\r\n  " + text + "  \n");
    EXPECT_EQ(other.getCollection(), recent.getCollection());
    EXPECT_EQ(other.changes, 1);
}

TEST(RecentCollection, passesOverWhatIsNotAPath)
{
    Recent recent(2);
    recent.refused = "/gone";
    ASSERT_TRUE(recent.tryAdd("/old"));
    recent.deserialize("/a\n\n%\n%4\n%zz\n/nul%00\n/gone\n/b%2\n/b%20c\n/a\n/d%2f");
    EXPECT_THAT(recent.getCollection(), ElementsAre("/a", "/d/"));
    recent.deserialize("");
    EXPECT_THAT(recent.getCollection(), IsEmpty());
    EXPECT_EQ(recent.changes, 3);
}

} // namespace
