#include "ShellTest.h"

#include <KesCommon/SignalGate.h>
#include <KesCommonView/UpdateView.h>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace KesTest {

namespace {

using Kes::DialogResult;
using testing::ElementsAre;

class MessageTest : public ShellTest {
protected:
    void fromDevice(const std::string& text)
    {
        std::thread device([&] { model.signalMessage.emit(text); });
        device.join();
    }
};

TEST_F(MessageTest, OnTheGuiThreadItIsShownBeforeTheEmissionReturns)
{
    open();
    dialogs.answer(DialogResult::Ok);
    model.signalMessage.emit("now");
    ASSERT_THAT(dialogs.getTexts(), ElementsAre("now"));
    EXPECT_EQ(dialogs.getMessages()[0].buttons, DialogResult::Ok);
    EXPECT_EQ(dialogs.getMessages()[0].parent, shell.getView());
}

/// With the gate kept, the device's thread would stand still until the user closes the box.
TEST_F(MessageTest, DevicesGoOnWhileABoxIsOpen)
{
    open();
    dialogs.answer(DialogResult::Ok, [this] {
        EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread());
        std::thread device([this] { model._setState("running"); });
        device.join();
        EXPECT_EQ(model.getState(), "running");
    });
    model.signalMessage.emit("open");
    EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread());
    model._setState("");
}

TEST_F(MessageTest, RepeatedTextIsShownOnceAndAgainAfterwards)
{
    open();
    for (int i = 0; i < 3; ++i)
        fromDevice("Overload");
    EXPECT_THAT(dialogs.getTexts(), ElementsAre()) << "a device's thread shows nothing";
    dialogs.answer(DialogResult::Ok, [this] {
        for (int i = 0; i < 3; ++i)
            fromDevice("Overload");
        model.signalMessage.emit("Overload");
        runPendingEvents();
    });
    EXPECT_TRUE(waitFor([this] { return dialogs.getTexts().size() == 1; }));
    runPendingEvents();
    EXPECT_THAT(dialogs.getTexts(), ElementsAre("Overload"));

    dialogs.answer(DialogResult::Ok);
    fromDevice("Overload");
    EXPECT_TRUE(waitFor([this] { return dialogs.getTexts().size() == 2; }));
}

TEST_F(MessageTest, DifferentTextsComeOneAfterTheOther)
{
    open();
    int depth = 0;
    const auto during = [&] {
        EXPECT_EQ(++depth, 1) << "a box over a box";
        runPendingEvents();
        --depth;
    };
    dialogs.answer(DialogResult::Ok, [&] {
        during();
        fromDevice("second");
        model.signalMessage.emit("third");
        during();
    });
    dialogs.answer(DialogResult::Ok, during);
    dialogs.answer(DialogResult::Ok, during);
    model.signalMessage.emit("first");
    EXPECT_THAT(dialogs.getTexts(), ElementsAre("first", "second", "third"));
}

/// A wait of the GUI thread serves its queue; a box in there would hold up what waits, such as a stop.
TEST_F(MessageTest, NoBoxOpensInsideAWait)
{
    open();
    std::atomic<bool> isHeld{false};
    std::atomic<bool> mayGo{false};
    std::thread device([&] {
        model.signalMessage.emit("while waiting");
        const Kes::SignalGate::Guard gate;
        // Runs where the message would: in the GUI thread's wait for the gate.
        Kes::beginUpdateView([&] { mayGo = true; });
        isHeld = true;
        while (!mayGo)
            std::this_thread::yield();
    });
    while (!isHeld)
        std::this_thread::yield();
    model._setState("waits for the gate");
    EXPECT_TRUE(mayGo);
    EXPECT_THAT(dialogs.getTexts(), ElementsAre());
    device.join();
    dialogs.answer(DialogResult::Ok);
    EXPECT_TRUE(waitFor([this] { return dialogs.getTexts().size() == 1; }));
    model._setState("");
}

TEST_F(MessageTest, FinishedReachesTheProgramOnTheGuiThread)
{
    open();
    const auto guiThread = std::this_thread::get_id();
    shell.onHook = [&](const std::string&) { EXPECT_EQ(std::this_thread::get_id(), guiThread); };
    model.startRun();
    model.endRun();
    EXPECT_TRUE(waitFor([this] { return record.has("finished"); }));
    model.signalFinished.emit(false);
    EXPECT_TRUE(record.has("finished without output"));
    shell.onHook = {};
}

TEST_F(MessageTest, QueuedMessagesDieWithThePresenter)
{
    auto ownModel = std::make_unique<ShellModel>(record);
    auto ownShell = std::make_unique<ShellPresenter>(*ownModel, record);
    ownShell->open(nullptr);
    std::thread device([&] {
        for (int i = 0; i < 100; ++i)
            ownModel->signalMessage.emit("text " + std::to_string(i));
    });
    device.join();
    ownShell.reset();
    runPendingEvents();
    EXPECT_THAT(dialogs.getTexts(), ElementsAre());
    ownModel->signalMessage.emit("nobody listens");
}

} // namespace

} // namespace KesTest
