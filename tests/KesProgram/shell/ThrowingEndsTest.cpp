// Hooks and listeners that throw from one moment of the closing on: the window is either there and can be
// closed, or the program has ended.

#include "ShellTest.h"

#include <glibmm/exceptionhandler.h>

namespace {

using namespace KesTest;
using Kes::DialogResult;

/// A user who wants the program to end, and nothing to be saved.
class EndingUser : public Kes::DialogBackend {
public:
    std::function<void(DialogResult buttons)> onQuestion;

    DialogResult showMessage(const Kes::MessageRequest& request) override
    {
        onQuestion(request.buttons);
        return request.buttons == DialogResult::YesNoCancel ? DialogResult::No
               : request.buttons == DialogResult::YesNo     ? DialogResult::Yes
                                                            : DialogResult::Ok;
    }
    std::string chooseFile(const Kes::FileRequest&) override { return {}; }
};

enum class From { Requesting, Asking, Waiting, Saving, ShuttingDown, Closed };

class ThrowingClosing : public GuiTest, public testing::WithParamInterface<std::tuple<const char*, From>> {
protected:
    ThrowingClosing()
    {
        auto user = std::make_unique<EndingUser>();
        user->onQuestion = [this](DialogResult buttons) {
            if (buttons != DialogResult::Ok)
                reach(buttons == DialogResult::YesNo ? From::Asking : From::Saving);
        };
        scripted = Kes::DialogBackend::install(std::move(user));
        const auto listen = [this](auto& signal, const char* name) {
            signal.connect([this, name](auto&&...) { record.failIn(name); });
        };
        model.signalClosing.connect([this] { reach(From::ShuttingDown); });
        model.signalClosed.connect([this] { reach(From::Closed); });
        listen(model.signalCanStopChanged, "canStop");
        listen(model.signalRunningChanged, "running");
        listen(model.signalFinished, "signalFinished");
        listen(model.signalMessage, "message");
        listen(model.signalClosing, "closing");
        listen(model.signalClosed, "model's closed");
        model.extension = "abc";
        model.stopsLater = true;
    }
    ~ThrowingClosing() override
    {
        handler.disconnect();
        Kes::DialogBackend::install(std::move(scripted));
    }

    void reach(From moment)
    {
        if (moment != std::get<From>(GetParam()))
            return;
        record.throwing = std::get<const char*>(GetParam());
        model.signalMessage.emit("told");
    }
    bool hasEnded() const { return record.has("closed"); }

    TemporaryHome home;
    Record record;
    ShellModel model{record};
    ShellPresenter shell{model, record};
    std::unique_ptr<Kes::DialogBackend> scripted;
    /// As at the top of a program's main loop.
    sigc::connection handler = Glib::add_exception_handler([this] { shell.tellCurrentException(); });
};

INSTANTIATE_TEST_SUITE_P(
    Everywhere, ThrowingClosing,
    testing::Combine(testing::Values("getProgramName", "hasArchiveLogic", "getDataStream", "model stop",
                                     "onFinished", "model closing", "onClosing", "saveXmlConfig",
                                     "fill config", "finished", "closed", "canStop", "running",
                                     "signalFinished", "message", "closing", "model's closed"),
                     testing::Values(From::Requesting, From::Asking, From::Waiting, From::Saving,
                                     From::ShuttingDown, From::Closed)));

TEST_P(ThrowingClosing, LeavesAWindowThatCanBeClosedOrNone)
{
    shell.open(nullptr);
    ASSERT_TRUE(waitFor([this] { return shell.getWindow().get_mapped(); }));
    model.startRun();
    reach(From::Requesting);
    shell.clickClose();
    EXPECT_TRUE(shell.getWindow().get_visible());
    reach(From::Waiting);
    model.endRun();
    EXPECT_TRUE(waitFor([this] { return !model.isOutputStarted() && model.getCanStart(); }));
    // A window that is hidden is on its way out, which may take its time.
    const auto isGoing = [this] { return hasEnded() || !shell.getWindow().get_visible(); };
    if (!waitFor(isGoing, std::chrono::milliseconds(100)))
        shell.closeWithoutQuestions();
    EXPECT_TRUE(waitFor([this] { return hasEnded(); }));
    EXPECT_FALSE(model.isRunning() || model.isOutputStarted() || shell.getWindow().get_visible());
    EXPECT_EQ(record.count("model closing"), 1U);
    EXPECT_EQ(record.count("closed"), 1U);
    record.throwing = "";
}

} // namespace
