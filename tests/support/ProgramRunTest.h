#pragma once

#include "GuiTest.h"
#include "TemporaryHome.h"

#include <KesCommon/Connection.h>
#include <KesDriver/simulated/SimulatedNetwork.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace KesTest {

/// A test program's model with a home of its own, whose runs are waited for and whose texts are kept.
template <typename Model>
class ProgramRunTest : public GuiTest {
protected:
    explicit ProgramRunTest(double speed)
    {
        model.setSpeed(speed);
        model.init();
        // On a busy machine the test before may still be about to leave it.
        getDevice()->dropConnections();
        _finished = model.signalFinished.connect([this](bool outputStarted) {
            hasPutOut = outputStarted;
            ++finishes;
        });
        _messages = model.signalMessage.connect([this](const std::string& text) {
            std::lock_guard lock(_mutex);
            _texts += text + "\n";
        });
    }
    ~ProgramRunTest() override
    {
        model.stopTest();
        EXPECT_TRUE(waitForEnd());
    }

    bool waitForEnd()
    {
        return waitFor([this] { return model.getCanStart() && !model.isRunning(); });
    }
    /// False when it has not begun.
    bool runToEnd(const std::function<bool()>& start)
    {
        finishes = 0;
        return start() && waitFor([this] { return finishes > 0; }) && waitForEnd();
    }
    bool runToEnd()
    {
        return runToEnd([this] { return model.startTest(); });
    }
    /// What the model has said since the last call, a line for each text.
    std::string takeTexts()
    {
        std::lock_guard lock(_mutex);
        return std::exchange(_texts, {});
    }
    /// The first one of the model's configuration.
    std::shared_ptr<KesDriver::SimulatedKesto> getDevice()
    {
        const auto kestos = model.getHardware()->getKestos().getItems();
        return KesDriver::SimulatedNetwork::getEmbedded()->get(kestos.front()->getAddress());
    }

    TemporaryHome home;
    Model model;
    std::atomic<int> finishes{0};
    std::atomic<bool> hasPutOut{false};

private:
    std::mutex _mutex;
    std::string _texts;
    Kes::ScopedConnection _finished;
    Kes::ScopedConnection _messages;
};

/// A test program with its window; unsaved changes are dropped in the end.
template <typename Model, typename Presenter>
class ProgramWindowTest : public GuiTest {
protected:
    ProgramWindowTest()
    {
        presenter.signalClosed.connect([this] { isClosed = true; });
        presenter.open(nullptr);
    }
    ~ProgramWindowTest() override
    {
        dialogs.answer(Kes::DialogResult::No);
        presenter.requestClose();
        EXPECT_TRUE(waitFor([this] { return isClosed; }));
    }

    TemporaryHome home;
    Model model;
    Presenter presenter{model};
    bool isClosed = false;
};

/// Lets a test change what has been measured.
template <typename Model>
class EditedModel : public Model {
public:
    template <typename Change>
    void edit(const Change& change)
    {
        auto results = *this->getResults();
        change(results);
        this->_replaceResults(results);
    }
};

} // namespace KesTest
