#include "ShellTest.h"

#include "support/LargestFile.h"

#include <KesCommon/FileLock.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/shell/ConfigurationError.h>

namespace {

using namespace KesTest;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Several instances of one program, without windows, with one configuration file.
class ConfigInstancesTest : public GuiTest {
protected:
    struct Instance {
        Instance()
        {
            model.extension = "abc";
            shell.loadXmlConfig();
        }
        std::vector<std::string> getRecentFiles() { return model.getFileRecentManager()->getCollection(); }
        void use(const std::string& file) { ASSERT_TRUE(model.getFileRecentManager()->tryAdd(file)); }

        Record record;
        ShellModel model{record};
        ShellPresenter shell{model, record};
    };

    std::string makeFile(int number)
    {
        const std::string file = home.file("file" + std::to_string(number) + ".abc");
        writeFile(file, "x");
        return file;
    }
    std::string path() { return Instance().shell._getXmlConfigFullPath(); }

    TemporaryHome home;
};

TEST_F(ConfigInstancesTest, TheLastOneToCloseKeepsWhatTheOthersHaveOpened)
{
    std::vector<std::string> files;
    for (int i = 0; i < 13; ++i)
        files.push_back(makeFile(i));
    Instance first;
    for (int i = 0; i < 10; ++i)
        first.use(files[static_cast<std::size_t>(i)]);
    first.shell._saveXmlConfig();
    Instance one, other;
    one.use(files[10]);
    one.use(files[3]);
    other.use(files[11]);
    one.shell._saveXmlConfig();
    other.shell._saveXmlConfig();
    other.shell._saveXmlConfig();
    std::vector<std::string> expected(files.begin() + 2, files.begin() + 10);
    std::erase(expected, files[3]);
    expected.insert(expected.end(), {files[10], files[3], files[11]});
    EXPECT_EQ(Instance().getRecentFiles(), expected);
}

TEST_F(ConfigInstancesTest, WhatAnotherInstanceIsWritingIsWaitedForAndMerged)
{
    const auto own = makeFile(0), theirs = makeFile(1);
    const std::string config = path();
    Instance instance;
    instance.shell._saveXmlConfig();
    instance.use(own);
    auto lock = Kes::FileLock::tryTake(config + ".lock");
    std::thread saving([&] { instance.shell._saveXmlConfig(); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    writeFile(config, "<root><RecentFiles>" + theirs + "</RecentFiles></root>");
    lock.reset();
    saving.join();
    EXPECT_THAT(Instance().getRecentFiles(), ElementsAre(theirs, own));
}

TEST_F(ConfigInstancesTest, AWriteThatEndsHalfWayForgetsNothing)
{
    Instance instance;
    const auto file = makeFile(0);
    instance.use(file);
    instance.shell._saveXmlConfig();
    instance.use(makeFile(1));
    {
        // Room for the former file, and not for the longer new one.
        const LargestFile limit(std::filesystem::file_size(path()));
        EXPECT_THROW(instance.shell._saveXmlConfig(), KesProgram::ConfigurationError);
    }
    EXPECT_THAT(Instance().getRecentFiles(), ElementsAre(file));
}

TEST_F(ConfigInstancesTest, ATornFileIsReadFromTheFormerOne)
{
    const auto file = makeFile(0), later = makeFile(1);
    const std::string config = path();
    for (const std::string torn : {"", "<root><Recent"}) {
        std::filesystem::remove(config);
        Instance first;
        first.use(file);
        first.shell._saveXmlConfig();
        EXPECT_FALSE(std::filesystem::exists(config + ".former"));
        std::filesystem::rename(config, config + ".former");
        writeFile(config, torn);
        Instance second;
        EXPECT_THAT(second.getRecentFiles(), ElementsAre(file));
        second.use(later);
        second.shell._saveXmlConfig();
        EXPECT_THAT(Instance().getRecentFiles(), ElementsAre(file, later));
        EXPECT_FALSE(std::filesystem::exists(config + ".former"));
    }
}

TEST_F(ConfigInstancesTest, WhatTheStartWouldNotReadIsNotMergedEither)
{
    const auto file = makeFile(0), theirs = makeFile(1);
    std::string attributes;
    for (int i = 0; i < 40000; ++i)
        attributes += " a" + std::to_string(i) + "=''";
    const std::string config = path(), recent = "<RecentFiles>" + theirs + "</RecentFiles></root>";
    for (const auto& text : {"<!DOCTYPE root><root>" + recent, "<root><a" + attributes + "/>" + recent}) {
        Instance instance;
        instance.use(file);
        writeFile(config, text);
        const auto begin = std::chrono::steady_clock::now();
        instance.shell._saveXmlConfig();
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
        EXPECT_THAT(Instance().getRecentFiles(), ElementsAre(file));
    }
}

TEST_F(ConfigInstancesTest, AFailureTellsFileAndReasonInWordsForAUser)
{
    const std::string config = path();
    const auto save = [] { Instance().shell._saveXmlConfig(); };
    using KesProgram::ConfigurationError;
    std::filesystem::create_directories(config);
    EXPECT_THAT(save,
                testing::ThrowsMessage<ConfigurationError>(AllOf(
                    HasSubstr("Reason: there is a folder of this name\n"), HasSubstr("Path:\n" + config))));
    std::filesystem::remove(config);
    std::filesystem::create_symlink("/dev/full", config);
    EXPECT_THAT(save, testing::ThrowsMessage<ConfigurationError>(
                          AllOf(HasSubstr("Reason: the disk is full\n"), Not(HasSubstr("rror")))));
}

} // namespace
