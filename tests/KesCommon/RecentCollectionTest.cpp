#include <KesCommon/RecentCollection.h>

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

struct Recent : Kes::RecentCollection {
    explicit Recent(unsigned int capacity) : RecentCollection(capacity)
    {
        signalChanged.connect([this] { ++changes; });
    }
    bool _canAdd(const std::string& path) override { return path != refused; }

    int changes = 0;
    std::string refused;
};

TEST(RecentCollection, keepsTheNewestLastAndEachPathOnce)
{
    Recent recent(3);
    for (const char* path : {"/a", "/b", "/c", "/a"})
        EXPECT_TRUE(recent.tryAdd(path));
    EXPECT_THAT(recent.getCollection(), ElementsAre("/b", "/c", "/a"));
    EXPECT_TRUE(recent.tryAdd("/d"));
    EXPECT_THAT(recent.getCollection(), ElementsAre("/c", "/a", "/d"));
    EXPECT_EQ(recent.changes, 5);

    recent.refused = "/no";
    EXPECT_TRUE(recent.tryAdd("/d"));
    EXPECT_FALSE(recent.tryAdd("/no"));
    EXPECT_FALSE(recent.tryAdd(""));
    recent.deserialize(recent.serialize());
    EXPECT_EQ(recent.changes, 5) << "nothing has changed";
    EXPECT_FALSE(Recent(0).tryAdd("/a"));
}

TEST(RecentCollection, readsBackEveryByteAPathMayHold)
{
    std::string all = "/";
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    Recent recent(5);
    ASSERT_TRUE(recent.tryAdd(all) && recent.tryAdd(" %41 "));
    const auto text = recent.serialize();
    for (const char c : text)
        EXPECT_TRUE(c == '\n' || (c > ' ' && c < 127 && c != '<' && c != '&')) << int(c);
    Recent other(5);
    other.deserialize("\r\n  " + text + "  \n");
    EXPECT_EQ(other.getCollection(), recent.getCollection());
}

TEST(RecentCollection, passesOverWhatIsNotAPath)
{
    Recent recent(2);
    recent.refused = "/gone";
    recent.deserialize("/a\n\n%\n%4\n%zz\n/nul%00\n/gone\n/b%2\n/b%20c\n/a\n/d%2f");
    EXPECT_THAT(recent.getCollection(), ElementsAre("/a", "/d/"));
    recent.deserialize("");
    EXPECT_THAT(recent.getCollection(), testing::IsEmpty());
}

} // namespace
