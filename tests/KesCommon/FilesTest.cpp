#include <KesCommon/DesktopOpener.h>
#include <KesCommon/Directories.h>
#include <KesCommon/FileLock.h>
#include <KesCommon/FileStream.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/LateLibrary.h>

#include "support/LoggedTexts.h"
#include "support/TemporaryHome.h"

#include <gmock/gmock.h>

#include <atomic>
#include <fcntl.h>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;
using KesTest::readFile;
using KesTest::writeFile;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

TEST(Directories, followTheUsersEnvironmentAtEachCall)
{
    const KesTest::TemporaryHome home;
    EXPECT_EQ(Kes::getKesCrossDocDir(), home.file("Documents/kes/"));
    EXPECT_EQ(Kes::getKesCrossAppConfigDir(), home.file(".config/kes/"));
    EXPECT_EQ(Kes::getKesCrossAppStateDir(), home.file(".local/state/kes/"));
    setenv("XDG_CONFIG_HOME", "/configs/", 1);
    EXPECT_EQ(Kes::getKesCrossAppConfigDir(), "/configs/kes/");
    for (const char* unusable : {"relative", ""}) {
        setenv("XDG_CACHE_HOME", unusable, 1);
        EXPECT_EQ(Kes::getKesCrossAppCacheDir(), home.file(".cache/kes/"));
    }
}

TEST(Directories, DataIsFoundWhereverItLiesAndTheOrderCounts)
{
    const KesTest::TemporaryHome home;
    const auto mine = home.file(".local/share/kesprogram/themes/mine.css");
    const auto shared = home.file("shared/kesprogram/themes/mine.css");
    const auto named = home.file("named/themes/mine.css");
    const auto find = [] { return Kes::findDataFile("themes/mine.css"); };
    EXPECT_EQ(find(), Kes::getThemesDir() + "mine.css") << "for want of a better one";
    const auto relative = fs::relative(home.file("relative")).string();
    writeFile(home.file("relative/kesprogram/themes/mine.css"), "");
    setenv("XDG_DATA_DIRS", (relative + "::" + home.file("none") + ":" + home.file("shared/")).c_str(), 1);
    writeFile(shared, "");
    EXPECT_EQ(find(), shared);
    writeFile(mine, "");
    EXPECT_EQ(find(), mine);
    writeFile(named, "");
    setenv("KES_DATA_DIR", home.file("named").c_str(), 1);
    EXPECT_EQ(find(), named);
    EXPECT_TRUE(fs::exists(Kes::findDataFile("themes/style.css"))) << "what the named folder has not";
    writeFile(home.file("named/themes/style.css"), "");
    EXPECT_EQ(Kes::findDataFile("themes/style.css"), home.file("named/themes/style.css"));
    unsetenv("KES_DATA_DIR");
    unsetenv("XDG_DATA_DIRS");
}

TEST(FileSystem, makesFoldersAndSeesFiles)
{
    const KesTest::TemporaryHome home;
    const auto folder = home.file("новая/папка/");
    EXPECT_FALSE(Kes::fileExist(folder));
    EXPECT_TRUE(Kes::mkdir_with_parents(folder) && Kes::mkdir_with_parents(folder));
    EXPECT_TRUE(Kes::fileExist(folder));
    Kes::openOutputFileUTF8Name(folder + "файл", std::ios::binary) << "text";
    EXPECT_EQ(Kes::openInputFileUTF8Name(folder + "файл", std::ios::binary).get(), 't');
    EXPECT_FALSE(Kes::openInputFileUTF8Name(folder + "missing"));
    for (const auto& path : {folder + "файл/below", folder + "файл", std::string()})
        EXPECT_FALSE(Kes::mkdir_with_parents(path)) << path;
    fs::create_symlink("nowhere", home.file("dangling"));
    EXPECT_FALSE(Kes::fileExist(home.file("dangling")));
}

TEST(FileSystem, writesWholeFilesThroughLinksAndKeepsPermissions)
{
    const KesTest::TemporaryHome home;
    const auto file = home.file("real/file");
    writeFile(file, "old");
    fs::permissions(file, fs::perms(0660));
    fs::create_symlink("real/file", home.file("link"));
    fs::create_symlink("real/target", home.file("dangling"));
    const std::string bytes("with\0zero", 9);
    for (const auto& path : {home.file("link"), home.file("new"), home.file("dangling")}) {
        EXPECT_TRUE(Kes::writeWholeFile(path, bytes));
        EXPECT_EQ(readFile(path), bytes);
    }
    EXPECT_TRUE(fs::is_symlink(home.file("link")) && fs::is_symlink(home.file("dangling")));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0660));
    for (const std::string& path :
         {home.file("real"), home.file("no/such"), std::string("/dev/full"), std::string()}) {
        const auto result = Kes::writeWholeFile(path, "z");
        ASSERT_FALSE(result) << path;
        // In its own words, without the name of a temporary file.
        EXPECT_THAT(result.getError()->getMessage(),
                    testing::MatchesRegex("Error writing file: [a-z ]*\n\nPath:\n" + path));
    }
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST(FileSystem, aPipeIsWrittenWhenSomebodyReadsItAndIsNeverWaitedFor)
{
    const KesTest::TemporaryHome home;
    const auto pipe = home.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(Kes::openOutputFileUTF8Name(pipe).is_open());
    EXPECT_FALSE(Kes::writeWholeFile(pipe, "nobody"));
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_TRUE(Kes::writeWholeFile(pipe, "report"));
    char bytes[8]{};
    EXPECT_EQ(read(reader, bytes, sizeof bytes), 6);
    EXPECT_STREQ(bytes, "report");
    close(reader);
}

TEST(FileLock, hasOneOwnerAlsoWhileItsFileComesAndGoes)
{
    const KesTest::TemporaryHome home;
    std::atomic<int> owners{0};
    const auto work = [&] {
        for (int i = 0; i < 5000; ++i)
            if (auto lock = Kes::FileLock::tryTake(home.file("lock"))) {
                EXPECT_EQ(++owners, 1);
                --owners;
                lock->removeFile();
            }
    };
    std::jthread other(work);
    work();
}

TEST(FileStream, readsNoMoreThanItMay)
{
    for (const std::size_t size : {0U, 1U, 65535U, 65536U, 65537U, 200000U}) {
        std::istringstream exact(std::string(size, 'x'));
        EXPECT_EQ(Kes::readAtMost(exact, size), std::string(size, 'x'));
        std::istringstream longer(std::string(size + 1, 'x'));
        EXPECT_FALSE(Kes::readAtMost(longer, size)) << size;
    }
}

TEST(DesktopOpener, asksTheBackendOnlyForExistingFiles)
{
    const KesTest::TemporaryHome home;
    const auto file = home.file("file.kes-unknown");
    writeFile(file, std::string("\x01\x02\x00\x03", 4));
    EXPECT_THAT(Kes::DesktopOpener::open(file).getError()->getMessage(), HasSubstr("Path:\n" + file))
        << "no application is there";
    std::vector<std::string> opened;
    auto desktop = Kes::DesktopOpener::replace([&](const std::string& path) {
        opened.push_back(path);
        return Kes::Result::failure("refused");
    });
    EXPECT_EQ(Kes::DesktopOpener::open(file).getError()->getMessage(), "refused");
    EXPECT_THAT(Kes::DesktopOpener::open(home.file("gone")).getError()->getMessage(), HasSubstr("gone"));
    EXPECT_THAT(opened, ElementsAre(file));
    Kes::DesktopOpener::replace(desktop);
}

TEST(Log, reachesTheObserverFromEveryThreadAndNeverThrows)
{
    std::vector<std::string> seen;
    KesLog::Log::setObserver([&](KesLog::Log::Level, const std::string& text) {
        seen.push_back(text);
        throw std::runtime_error("observer");
    });
    std::thread([] { KesLog::Log::writeWarn("Предупреждение %s \xff"); }).join();
    KesLog::Log::setObserver(nullptr);
    KesLog::Log::writeInfo("unseen");
    EXPECT_THAT(seen, ElementsAre("Предупреждение %s \xff"));
}

TEST(LateLibrary, whatCannotBeHadIsNamedInTheLog)
{
    KesTest::LoggedTexts logged;
    EXPECT_EQ(Kes::findLateSymbol("KesNowhere", "anything"), nullptr);
    EXPECT_EQ(Kes::findLateSymbol("KesXslt", "noSuchFunction"), nullptr);
    EXPECT_THAT(logged.take(), ElementsAre(HasSubstr("libKesNowhere.so"), HasSubstr("noSuchFunction")));
}

} // namespace
