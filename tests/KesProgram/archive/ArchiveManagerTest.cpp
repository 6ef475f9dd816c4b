#include "support/LanguageScope.h"
#include "support/TemporaryHome.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/DataFormatError.h>
#include <KesProgram/archive/FileAccessError.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <memory>
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

    std::unique_ptr<Manager> _make()
    {
        auto manager = std::make_unique<Manager>(
            [this](const std::string& name) { _events.push_back("new " + name); },
            [this] { return std::make_unique<std::istringstream>(_data); },
            [this](std::istream& stream, bool repair) { return _load(stream, repair); });
        manager->signalFileNameChanged.connect(
            [this, made = manager.get()] { _events.push_back("name=" + made->getFileName()); });
        return manager;
    }
    bool _load(std::istream& stream, bool repair)
    {
        _events.push_back(repair ? "repair" : "load");
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        const bool usable = bytes.starts_with(repair ? "half " : "good ");
        if (usable)
            _data = bytes;
        return usable;
    }
    Events _takeEvents() { return std::exchange(_events, {}); }

    KesTest::TemporaryHome _home;
    std::string _data = "good data";
    Events _events;
    std::unique_ptr<Manager> _manager = _make();
};

template <typename Error>
bool failedWith(const Kes::Result& result)
{
    return !result && dynamic_cast<Error*>(result.getError().get()) != nullptr;
}

TEST_F(ArchiveManagerTest, InitOpensTheLastFileOrBeginsANewOne)
{
    const auto good = _home.file("good"), bad = _home.file("bad");
    writeFile(good, "good file");
    writeFile(bad, "bad file");
    const struct {
        std::string file;
        Events events;
        std::string name;
    } cases[] = {{"", {"new "}, ""},
                 {_home.file("missing"), {"new ", "name="}, ""},
                 {bad, {"load", "new ", "name="}, ""},
                 {good, {"load"}, good}};
    for (const auto& [file, events, name] : cases) {
        _manager = _make();
        EXPECT_FALSE(_manager->isInited() || _manager->isFileChanged());
        _manager->init(file);
        _manager->init(good);
        EXPECT_EQ(_takeEvents(), events) << file;
        EXPECT_EQ(_manager->getFileName(), name);
        EXPECT_EQ(_manager->isNew(), name.empty());
        EXPECT_TRUE(_manager->isInited());
    }
}

TEST_F(ArchiveManagerTest, OpenNamesTheFileBeforeItReadsIt)
{
    EXPECT_TRUE(failedWith<FileAccessError>(_manager->open(_home.file("missing"), false)));
    EXPECT_EQ(_takeEvents(), Events{});

    const auto path = _home.file("Имя файла.abc");
    writeFile(path, "half file");
    EXPECT_TRUE(failedWith<DataFormatError>(_manager->open(path, false)));
    EXPECT_EQ(_takeEvents(), (Events{"name=" + path, "load"}));
    EXPECT_TRUE(_manager->open(path, true));
    EXPECT_EQ(_takeEvents(), (Events{"repair"}));
    EXPECT_EQ(_data, "half file");

    _manager->create("");
    EXPECT_EQ(_takeEvents(), (Events{"new ", "name="}));
    EXPECT_TRUE(failedWith<DataFormatError>(_manager->open(_home.getPath().string(), false)));
}

TEST_F(ArchiveManagerTest, SaveWritesTheBytesAndKeepsTheNameWhenItCannotOpen)
{
    EXPECT_FALSE(_manager->save());
    const auto path = _home.file("Архив.abc");
    _data = std::string("good \0\xFF", 7);
    ASSERT_TRUE(_manager->saveAs(path));
    EXPECT_EQ(readFile(path), _data);
    EXPECT_EQ(_takeEvents(), (Events{"name=" + path}));

    _data = "good";
    ASSERT_TRUE(_manager->save());
    EXPECT_EQ(readFile(path), _data);
    EXPECT_FALSE(_manager->saveAs(_home.file("missing/a.abc")));
    EXPECT_FALSE(_manager->saveAs(_home.getPath().string()));
    EXPECT_EQ(_takeEvents(), Events{});
    EXPECT_EQ(_manager->getFileName(), path);
    EXPECT_TRUE(_manager->saveAs("/dev/full")) << "only opening is checked";
}

TEST_F(ArchiveManagerTest, ChangedMeansOtherBytesThanInTheFile)
{
    _manager->init("");
    EXPECT_TRUE(_manager->isFileChanged());
    const auto path = _home.file("a.abc");
    for (const std::size_t size : {200000, 131072, 1, 0}) {
        const auto saved = _data = std::string(size, 'x');
        ASSERT_TRUE(_manager->saveAs(path));
        EXPECT_FALSE(_manager->isFileChanged()) << size;
        for (const std::size_t position : {0, 65535, 65536, 131071, 199999}) {
            _data = saved;
            if (position < size)
                _data[position] = '!';
            EXPECT_EQ(_manager->isFileChanged(), position < size) << position;
        }
        for (const auto& data : {saved + "x", saved.substr(0, size / 2)}) {
            _data = data;
            EXPECT_EQ(_manager->isFileChanged(), data != saved) << data.size();
        }
    }
    std::filesystem::remove(path);
    EXPECT_TRUE(_manager->isFileChanged());
}

TEST_F(ArchiveManagerTest, NameSignalTellsOnlyOfRealChanges)
{
    for (const auto& name : {std::string(), std::string("a"), std::string("a"), std::string("a\0", 2)})
        _manager->_setActualFileName(name);
    EXPECT_EQ(_events, (Events{"name=a", std::string("name=a\0", 7)}));
}

TEST(ArchiveErrors, AreToldApartByTypeAndTalkTheLanguageOfTheProcess)
{
    EXPECT_EQ(DataFormatError::get()->getMessage(), "Data format error");
    EXPECT_EQ(dynamic_cast<DataFormatError*>(FileAccessError::get().get()), nullptr);
    const auto outer = FileAccessError::create({DataFormatError::get()});
    EXPECT_EQ(outer->getInner().front(), DataFormatError::get());
    const KesTest::LanguageScope russian(lng::Russian);
    EXPECT_EQ(outer->getMessage(), "Ошибка доступа к файлу");
}

} // namespace
