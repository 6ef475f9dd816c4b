#pragma once

#include "LostBytes.h"

#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/ArchiveManagerPresenter.h>
#include <KesProgram/recovery/RecoveryKeeper.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <sstream>
#include <utility>

namespace KesTest {

using namespace KesProgram;
using namespace std::chrono_literals;
using Kes::DialogResult;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

/// A document that is one string, with the commands and the keeper of a program.
class RecoveryKeeperTest : public GuiTest {
protected:
    RecoveryKeeperTest() { _manager.init(""); }

    void _begin()
    {
        _keeper = std::make_unique<RecoveryKeeper>(_manager, "Test", _folder, [] { return "8 results"; });
    }
    /// What is offered after a kill at this moment.
    Texts _lostAfterKill()
    {
        _keeper->writeNow(5s);
        const auto files = _home.file("killed/");
        std::filesystem::remove_all(files);
        if (std::filesystem::exists(_folder))
            std::filesystem::copy(_folder, files);
        return lostIn(files);
    }
    /// What is offered after the program has been closed.
    Texts _lostAfterEnd()
    {
        _keeper->end();
        _keeper.reset();
        return lostIn(_folder);
    }
    /// What the next start does when its user wants the work back. Returns the file it belongs to.
    std::string _restore()
    {
        auto lost = std::move(_keeper->getStore().findLost().at(0));
        auto fileName = lost.getCopy().fileName;
        std::istringstream data(lost.getCopy().bytes);
        EXPECT_TRUE(_presenter.restore(data, fileName, lost.isFileNewer()));
        _keeper->adopt(std::move(lost));
        return fileName;
    }
    std::string _saved(const std::string& data)
    {
        _data = data;
        const auto path = _home.file("document.abc");
        EXPECT_TRUE(_manager.saveAs(path));
        return path;
    }

    TemporaryHome _home;
    std::string _folder = _home.file("state/");
    std::string _data = "new";
    bool _isThrowing = false;
    /// Called once, when the data has been taken.
    std::function<void()> _onData;
    ArchiveManager _manager{[this](const std::string&) { _data = "new"; },
                            [this] {
                                if (_isThrowing)
                                    throw std::runtime_error("no data");
                                auto stream = std::make_unique<std::istringstream>(_data);
                                if (const auto onData = std::exchange(_onData, nullptr))
                                    onData();
                                return stream;
                            },
                            [this](std::istream& stream, bool) {
                                _data.assign(std::istreambuf_iterator<char>(stream), {});
                                return _data != "bad";
                            }};
    ArchiveManagerPresenter _presenter{&_manager, nullptr, "abc", ""};
    std::unique_ptr<RecoveryKeeper> _keeper;
};

} // namespace KesTest
