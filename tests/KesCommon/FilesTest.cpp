#include <KesCommon/DesktopOpener.h>
#include <KesCommon/Directories.h>
#include <KesCommon/FileStream.h>
#include <KesCommon/FileSystem.h>
#include <KesCommon/Log.h>

#include "support/TemporaryHome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;
using KesTest::readFile;
using KesTest::writeFile;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

TEST(Directories, followTheUsersEnvironmentAtEachCall)
{
    const KesTest::TemporaryHome home;
    setenv("XDG_CACHE_HOME", "/caches", 1);
    setenv("XDG_CONFIG_HOME", "/configs/", 1);
    setenv("XDG_DOCUMENTS_DIR", "/documents", 1);
    EXPECT_EQ(Kes::getKesCrossAppCacheDir(), "/caches/kes/");
    EXPECT_EQ(Kes::getKesCrossAppConfigDir(), "/configs/kes/");
    EXPECT_EQ(Kes::getKesCrossDocDir(), "/documents/kes/");
    setenv("XDG_CACHE_HOME", "relative", 1);
    setenv("XDG_CONFIG_HOME", "", 1);
    EXPECT_EQ(Kes::getKesCrossAppCacheDir(), home.file(".cache/kes/"));
    EXPECT_EQ(Kes::getKesCrossAppConfigDir(), home.file(".config/kes/"));
    unsetenv("XDG_CACHE_HOME");
    unsetenv("XDG_DOCUMENTS_DIR");
    EXPECT_EQ(Kes::getKesCrossAppCacheDir(), home.file(".cache/kes/"));
    EXPECT_THAT(Kes::getKesCrossDocDir(), testing::EndsWith("/kes/"));
}

TEST(Directories, dataIsFoundFromTheExecutable)
{
    const auto exe = Kes::getKesCrossExeDir();
    EXPECT_EQ(exe, fs::read_symlink("/proc/self/exe").parent_path().string() + "/");
    EXPECT_EQ(Kes::getDataDir(), fs::path(exe).parent_path().parent_path().string() + "/share/kesprogram/");
    EXPECT_EQ(Kes::getThemesDir(), Kes::getDataDir() + "themes/");
}

TEST(FileSystem, makesFoldersAndSeesFiles)
{
    const KesTest::TemporaryHome home;
    const auto folder = home.file("новая/папка/");
    EXPECT_FALSE(Kes::fileExist(folder));
    EXPECT_TRUE(Kes::mkdir_with_parents(folder));
    EXPECT_TRUE(Kes::mkdir_with_parents(folder));
    EXPECT_TRUE(Kes::fileExist(folder));

    Kes::openOutputFileUTF8Name(folder + "файл", std::ios::binary) << "text";
    EXPECT_EQ(Kes::openInputFileUTF8Name(folder + "файл", std::ios::binary).get(), 't');
    EXPECT_FALSE(Kes::openInputFileUTF8Name(folder + "missing"));
    EXPECT_FALSE(Kes::openOutputFileUTF8Name(folder + "no/such"));

    EXPECT_FALSE(Kes::mkdir_with_parents(folder + "файл/below"));
    EXPECT_FALSE(Kes::mkdir_with_parents(folder + "файл"));
    EXPECT_FALSE(Kes::mkdir_with_parents(""));
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
    const std::string bytes("with\0zero", 9);
    EXPECT_TRUE(Kes::writeWholeFile(home.file("link"), bytes));
    EXPECT_EQ(readFile(file), bytes);
    EXPECT_TRUE(fs::is_symlink(home.file("link")));
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0660));

    EXPECT_TRUE(Kes::writeWholeFile(home.file("new"), "x"));
    EXPECT_EQ(readFile(home.file("new")), "x");
    fs::create_symlink("real/target", home.file("dangling"));
    EXPECT_TRUE(Kes::writeWholeFile(home.file("dangling"), "y"));
    EXPECT_EQ(readFile(home.file("real/target")), "y");

    for (const auto& path :
         {home.file("real"), home.file("no/such"), std::string("/dev/full"), std::string()}) {
        const auto result = Kes::writeWholeFile(path, "z");
        EXPECT_FALSE(result) << path;
        EXPECT_THAT(result.getError()->getMessage(), HasSubstr("Path:\n" + path));
    }
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

TEST(DesktopOpener, asksTheBackendOnlyForExistingFiles)
{
    const KesTest::TemporaryHome home;
    writeFile(home.file("report.html"), "x");
    std::vector<std::string> opened;
    auto desktop = Kes::DesktopOpener::replace([&](const std::string& path) {
        opened.push_back(path);
        return Kes::Result::failure("refused");
    });
    EXPECT_EQ(Kes::DesktopOpener::open(home.file("report.html")).getError()->getMessage(), "refused");
    EXPECT_THAT(Kes::DesktopOpener::open(home.file("gone")).getError()->getMessage(),
                HasSubstr(home.file("gone")));
    EXPECT_THAT(opened, ElementsAre(home.file("report.html")));
    Kes::DesktopOpener::replace(desktop);
}

TEST(DesktopOpener, saysThatNoApplicationIsThere)
{
    const KesTest::TemporaryHome home;
    writeFile(home.file("file.kes-unknown"), std::string("\x01\x02\x00\x03", 4));
    const auto result = Kes::DesktopOpener::open(home.file("file.kes-unknown"));
    ASSERT_FALSE(result);
    EXPECT_THAT(result.getError()->getMessage(), HasSubstr("Path:\n" + home.file("file.kes-unknown")));
}

TEST(Log, reachesTheObserverFromEveryThreadAndNeverThrows)
{
    std::vector<std::pair<KesLog::Log::Level, std::string>> seen;
    KesLog::Log::setObserver([&](KesLog::Log::Level level, const std::string& text) {
        seen.emplace_back(level, text);
        throw std::runtime_error("observer");
    });
    KesLog::Log::writeInfo("info");
    std::thread([] { KesLog::Log::writeWarn("Предупреждение %s \xff"); }).join();
    KesLog::Log::writeError("error");
    KesLog::Log::setObserver(nullptr);
    KesLog::Log::writeInfo("unseen");
    using Level = KesLog::Log::Level;
    EXPECT_THAT(seen, ElementsAre(std::pair(Level::Info, std::string("info")),
                                  std::pair(Level::Warn, std::string("Предупреждение %s \xff")),
                                  std::pair(Level::Error, std::string("error"))));
}

} // namespace
