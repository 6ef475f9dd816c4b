#include "ShellTest.h"

#include <KesCommon/SignalGate.h>
#include <KesCommonView/UpdateView.h>

namespace {

using namespace KesTest;
using Kes::DialogResult;
using testing::ElementsAre;

class MessageTest : public ShellTest {
protected:
    MessageTest() { open(); }

    void fromDevice(const std::string& text)
    {
        onAnotherThread([&] { model.signalMessage.emit(text); });
    }

    bool hasShown(std::size_t count)
    {
        return waitFor([&] { return dialogs.getTexts().size() == count; });
    }
};

/// At once on the GUI thread. With the gate kept, the device's thread would stand still until the user
/// closes the box.
TEST_F(MessageTest, DevicesGoOnWhileABoxIsOpen)
{
    dialogs.answer(DialogResult::Ok, [this] {
        onAnotherThread([this] { model._setState("running"); });
        EXPECT_EQ(model.getState(), "running");
    });
    model.signalMessage.emit("open");
    EXPECT_FALSE(Kes::SignalGate::isHeldByThisThread());
    ASSERT_THAT(dialogs.getTexts(), ElementsAre("open"));
    EXPECT_EQ(dialogs.getMessages()[0].buttons, DialogResult::Ok);
    EXPECT_EQ(dialogs.getMessages()[0].parent, shell.getView());
}

TEST_F(MessageTest, RepeatedTextIsShownOnceAndAgainAfterwards)
{
    const auto repeat = [this] {
        for (int i = 0; i < 3; ++i)
            fromDevice("Overload");
    };
    repeat();
    EXPECT_THAT(dialogs.getTexts(), ElementsAre()) << "a device's thread shows nothing";
    dialogs.answer(DialogResult::Ok, repeat);
    EXPECT_TRUE(hasShown(1));
    runPendingEvents();
    EXPECT_TRUE(hasShown(1));
    dialogs.answer(DialogResult::Ok);
    fromDevice("Overload");
    EXPECT_TRUE(hasShown(2));
}

TEST_F(MessageTest, DifferentTextsComeOneAfterTheOther)
{
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
    EXPECT_TRUE(hasShown(1));
}

TEST_F(MessageTest, QueuedMessagesDieWithThePresenter)
{
    auto ownModel = std::make_unique<ShellModel>(record);
    auto ownShell = std::make_unique<ShellPresenter>(*ownModel, record);
    ownShell->open(nullptr);
    onAnotherThread([&] { ownModel->signalMessage.emit("text"); });
    ownShell.reset();
    runPendingEvents();
    EXPECT_THAT(dialogs.getTexts(), ElementsAre());
    ownModel->signalMessage.emit("nobody listens");
}

/// A function of the GUI thread that does not return, without a test and in the middle of one.
TEST_F(MessageTest, AWindowThatDoesNotAnswerEndsTheTestAndSaysSo)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(3500));
    runPendingEvents();
    EXPECT_THAT(dialogs.getTexts(), ElementsAre());
    model.startRun();
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(6);
    while (model.isRunning() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_FALSE(model.isRunning());
    dialogs.answer(DialogResult::Ok);
    EXPECT_TRUE(hasShown(1));
    EXPECT_THAT(dialogs.getTexts(),
                ElementsAre("The window did not answer for more than 3 s during the test. The outputs were "
                            "switched off."));
}

} // namespace
