#include "Archives.h"
#include "support/TemporaryHome.h"

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

using namespace KesProgram;
using Archives::Contents;
using KesTest::readFile;
using KesTest::writeFile;

class ArchiveFolder : public testing::Test {
protected:
    std::string _pack(const std::string& folder)
    {
        std::ostringstream out;
        return ArchiveHelper::packFolderToStream(out, folder, ArchiveHelper::PREFIX) ? out.str() : "";
    }
    bool _unpack(const std::string& bytes, const std::string& folder)
    {
        std::istringstream in(bytes);
        return ArchiveHelper::unpackStreamToFolder(in, folder, ArchiveHelper::PREFIX);
    }

    KesTest::TemporaryHome _home;
};

TEST_F(ArchiveFolder, PacksTheRegularFilesDirectlyInside)
{
    writeFile(_home.file("in/данные.txt"), "текст");
    writeFile(_home.file("in/\xFF\xFE"), "odd");
    writeFile(_home.file("in/empty"), "");
    writeFile(_home.file("in/folder/inner"), "not packed");
    std::filesystem::create_symlink("данные.txt", _home.file("in/link"));
    std::filesystem::create_symlink("folder", _home.file("in/folder link"));
    std::filesystem::create_symlink("nowhere", _home.file("in/broken link"));
    ASSERT_EQ(mkfifo(_home.file("in/pipe").c_str(), 0600), 0);
    EXPECT_EQ(_pack(_home.file("in/folder/none")), "");
    EXPECT_EQ(Archives::unpack(_pack(_home.file("in"))),
              (Contents{{"данные.txt", "текст"}, {"\xFF\xFE", "odd"}, {"empty", ""}, {"link", "текст"}}));
}

TEST_F(ArchiveFolder, PacksMoreFilesThanMayBeOpenAtOnce)
{
    for (int i = 0; i < 200; ++i)
        writeFile(_home.file("in/" + std::to_string(i)), std::to_string(i));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit few = before;
    few.rlim_cur = 100;
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const auto bytes = _pack(_home.file("in"));
    setrlimit(RLIMIT_NOFILE, &before);
    const auto contents = Archives::unpack(bytes);
    EXPECT_EQ(contents.size(), 200u);
    for (const auto& [name, content] : contents)
        EXPECT_EQ(content, name);
}

TEST_F(ArchiveFolder, AFileThatCannotBeOpenedEndsUnpackingButAWriteErrorDoesNot)
{
    EXPECT_FALSE(_unpack(Archives::pack({{"a", "1"}}), _home.file("out")));
    EXPECT_FALSE(std::filesystem::exists(_home.file("out"))) << "the folder has to be there";
    writeFile(_home.file("out/a"), "much longer than the new content");
    std::filesystem::create_directories(_home.file("out/b"));
    EXPECT_FALSE(_unpack(Archives::pack({{"a", "1"}, {"b", "2"}, {"c", "3"}}), _home.file("out")));
    EXPECT_EQ(readFile(_home.file("out/a")), "1");
    EXPECT_FALSE(std::filesystem::exists(_home.file("out/c")));

    std::filesystem::create_symlink("/dev/full", _home.file("out/full"));
    EXPECT_TRUE(_unpack(Archives::pack({{"full", "2"}, {"Имя", "3"}}), _home.file("out")));
    EXPECT_EQ(readFile(_home.file("out/Имя")), "3");
}

} // namespace
