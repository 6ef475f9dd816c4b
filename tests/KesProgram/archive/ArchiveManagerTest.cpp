#include "support/LanguageScope.h"
#include "support/TemporaryHome.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/DataFormatError.h>
#include <KesProgram/archive/FileAccessError.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace KesProgram;
using KesTest::readFile;
using KesTest::writeFile;
using Events = std::vector<std::string>;

/// A manager with a model that is one string; records what it is asked and what is signalled.
class ArchiveManagerTest : public testing::Test {
protected:
    class Manager : public ArchiveManager {
    public:
        using ArchiveManager::_setActualFileName;
        using ArchiveManager::ArchiveManager;
    };

    ArchiveManagerTest()
    {
        _manager.signalFileNameChanged.connect(
            [this] { _events.push_back("name=" + _manager.getFileName()); });
    }

    bool _load(std::istream& stream, bool repair)
    {
        _events.push_back(repair ? "repair" : "load");
        std::ostringstream content;
        content << stream.rdbuf();
        const auto bytes = content.str();
        const bool usable = bytes.starts_with(repair ? "half " : "good ");
        if (usable)
            _data = bytes;
        return usable;
    }
    Events _takeEvents() { return std::exchange(_events, {}); }

    KesTest::TemporaryHome _home;
    std::string _data = "good data";
    Events _events;
    Manager _manager{[this](const std::string& name) { _events.push_back("new " + name); },
                     [this] { return std::make_unique<std::istringstream>(_data); },
                     [this](std::istream& stream, bool repair) { return _load(stream, repair); }};
};

template <typename Error>
bool failedWith(const Kes::Result& result)
{
    return !result && dynamic_cast<Error*>(result.getError().get()) != nullptr;
}

TEST_F(ArchiveManagerTest, InitOpensTheLastFileOrBeginsANewOne)
{
    writeFile(_home.file("good"), "good file");
    writeFile(_home.file("bad"), "bad file");
    const auto path = [this](const char* name) { return *name ? _home.file(name) : std::string(); };
    const struct {
        const char* file;
        Events events;
        const char* name;
    } cases[] = {{"", {"new "}, ""},
                 {"missing", {"new ", "name="}, ""},
                 {"bad", {"load", "new ", "name="}, ""},
                 {"good", {"load"}, "good"}};
    for (const auto& [file, events, name] : cases) {
        Events seen;
        Manager manager([&](const std::string& given) { seen.push_back("new " + given); },
                        [this] { return std::make_unique<std::istringstream>(_data); },
                        [&](std::istream& stream, bool repair) {
                            seen.push_back("load");
                            std::string word;
                            return stream >> word && word == "good" && !repair;
                        });
        manager.signalFileNameChanged.connect([&] { seen.push_back("name=" + manager.getFileName()); });
        EXPECT_FALSE(manager.isInited());
        EXPECT_FALSE(manager.isFileChanged());
        manager.init(path(file));
        EXPECT_EQ(seen, events) << file;
        EXPECT_EQ(manager.getFileName(), path(name));
        EXPECT_EQ(manager.isNew(), *name == 0);
        manager.init(_home.file("good"));
        EXPECT_EQ(seen, events) << file;
        EXPECT_TRUE(manager.isInited());
    }
}

TEST_F(ArchiveManagerTest, OpenNamesTheFileBeforeItReadsIt)
{
    _manager.init("");
    _takeEvents();
    EXPECT_TRUE(failedWith<FileAccessError>(_manager.open(_home.file("missing"), false)));
    EXPECT_EQ(_takeEvents(), Events{});
    EXPECT_TRUE(_manager.isNew());

    const auto path = _home.file("Имя файла.abc");
    writeFile(path, "half file");
    EXPECT_TRUE(failedWith<DataFormatError>(_manager.open(path, false)));
    EXPECT_EQ(_takeEvents(), (Events{"name=" + path, "load"}));
    EXPECT_EQ(_data, "good data");
    EXPECT_TRUE(_manager.open(path, true));
    EXPECT_EQ(_takeEvents(), (Events{"repair"}));
    EXPECT_EQ(_data, "half file");

    _manager.create("");
    EXPECT_EQ(_takeEvents(), (Events{"new ", "name="}));
    EXPECT_TRUE(failedWith<DataFormatError>(_manager.open(_home.getPath().string(), false)));
}

TEST_F(ArchiveManagerTest, SaveWritesTheBytesAndKeepsTheNameWhenItCannotOpen)
{
    _manager.init("");
    EXPECT_FALSE(_manager.save());
    _takeEvents();
    const auto path = _home.file("Архив.abc");
    _data = std::string("good \0\xFF", 7);
    ASSERT_TRUE(_manager.saveAs(path));
    EXPECT_EQ(readFile(path), _data);
    EXPECT_EQ(_takeEvents(), (Events{"name=" + path}));

    _data = "good, shorter";
    ASSERT_TRUE(_manager.save());
    EXPECT_EQ(readFile(path), _data);
    EXPECT_FALSE(_manager.saveAs(_home.file("missing/a.abc")));
    EXPECT_FALSE(_manager.saveAs(_home.getPath().string()));
    EXPECT_EQ(_takeEvents(), Events{});
    EXPECT_EQ(_manager.getFileName(), path);

    // Only opening is checked.
    EXPECT_TRUE(_manager.saveAs("/dev/full"));
}

TEST_F(ArchiveManagerTest, ChangedMeansOtherBytesThanInTheFile)
{
    _manager.init("");
    EXPECT_TRUE(_manager.isFileChanged());
    _data = "good " + std::string(200000, 'x');
    const auto path = _home.file("a.abc");
    ASSERT_TRUE(_manager.saveAs(path));
    const auto saved = _data;
    EXPECT_FALSE(_manager.isFileChanged());
    for (const auto position : {std::size_t{0}, std::size_t{65535}, std::size_t{65536}, saved.size() - 1}) {
        _data[position] = '!';
        EXPECT_TRUE(_manager.isFileChanged()) << position;
        _data = saved;
    }
    for (const auto& data : {saved + "x", saved.substr(1), saved.substr(0, saved.size() - 1),
                             saved.substr(0, 131072), std::string()}) {
        _data = data;
        EXPECT_TRUE(_manager.isFileChanged());
    }
    _data = saved.substr(0, 131072);
    ASSERT_TRUE(_manager.save());
    EXPECT_FALSE(_manager.isFileChanged());
    _data += 'x';
    EXPECT_TRUE(_manager.isFileChanged());
    std::filesystem::remove(path);
    EXPECT_TRUE(_manager.isFileChanged());
}

TEST_F(ArchiveManagerTest, NameSignalTellsOnlyOfRealChanges)
{
    _manager._setActualFileName("");
    _manager._setActualFileName("a");
    _manager._setActualFileName("a");
    _manager._setActualFileName(std::string("a\0", 2));
    EXPECT_EQ(_events, (Events{"name=a", std::string("name=a\0", 7)}));
}

TEST(ArchiveErrors, AreToldApartByTypeAndTalkTheLanguageOfTheProcess)
{
    EXPECT_EQ(DataFormatError::get(), DataFormatError::get());
    EXPECT_EQ(DataFormatError::get()->getMessage(), "Data format error");
    EXPECT_EQ(FileAccessError::get()->getMessage(), "File access error");
    EXPECT_TRUE(DataFormatError::get()->getInner().empty());
    EXPECT_EQ(dynamic_cast<DataFormatError*>(FileAccessError::get().get()), nullptr);
    const auto outer = FileAccessError::create({DataFormatError::get()});
    EXPECT_EQ(outer->getInner().front(), DataFormatError::get());
    EXPECT_NE(outer, FileAccessError::get());
    const KesTest::LanguageScope russian(lng::Russian);
    EXPECT_EQ(DataFormatError::get()->getMessage(), "Ошибка формата данных");
    EXPECT_EQ(outer->getMessage(), "Ошибка доступа к файлу");
}

} // namespace
