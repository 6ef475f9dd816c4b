// Hooks and listeners that throw from one moment of the closing on: the window is either there and can be
// closed, or the program has ended.

#include "ShellTest.h"

#include <KesCommonView/DialogBackend.h>

#include <glibmm/exceptionhandler.h>

#include <atomic>
#include <stdexcept>
#include <tuple>

namespace KesTest {
namespace {

using Kes::DialogResult;

/// What throws whenever it is called, once it is set. Any thread.
class Thrower {
public:
    void set(const char* name) { _name = name; }
    void failIn(const std::string& name) const
    {
        if (name == _name.load())
            throw std::runtime_error("thrown by " + name);
    }

private:
    std::atomic<const char*> _name{""};
};

class ThrowingShellModel : public ShellModel {
public:
    ThrowingShellModel(Record& record, const Thrower& thrower) : ShellModel(record), _thrower(thrower) {}

    std::string getProgramName() override
    {
        _thrower.failIn("getProgramName");
        return ShellModel::getProgramName();
    }
    bool hasArchiveLogic() override
    {
        _thrower.failIn("hasArchiveLogic");
        return ShellModel::hasArchiveLogic();
    }
    std::unique_ptr<std::istream> getDataStream() override
    {
        _thrower.failIn("getDataStream");
        return ShellModel::getDataStream();
    }

protected:
    void _onStop() override
    {
        ShellModel::_onStop();
        _thrower.failIn("onStop");
    }
    void _onFinished() override { _thrower.failIn("onFinished"); }
    void _onClosing() override
    {
        ShellModel::_onClosing();
        _thrower.failIn("model's onClosing");
    }

private:
    const Thrower& _thrower;
};

class ThrowingShell : public ShellPresenter {
public:
    ThrowingShell(ShellModel& model, Record& record, const Thrower& thrower)
        : ShellPresenter(model, record), _thrower(thrower)
    {
        onHook = [this](const std::string& hook) { _thrower.failIn(hook); };
    }

protected:
    void _onClosing() override
    {
        _thrower.failIn("onClosing");
        ShellPresenter::_onClosing();
    }
    void _saveXmlConfig() override
    {
        _thrower.failIn("saveXmlConfig");
        ShellPresenter::_saveXmlConfig();
    }

private:
    const Thrower& _thrower;
};

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
            signal.connect([this, name](auto&&...) { thrower.failIn(name); });
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
        thrower.set(std::get<const char*>(GetParam()));
        model.signalMessage.emit("told");
    }
    bool hasEnded() const { return record.has("closed"); }

    TemporaryHome home;
    Record record;
    Thrower thrower;
    ThrowingShellModel model{record, thrower};
    ThrowingShell shell{model, record, thrower};
    std::unique_ptr<Kes::DialogBackend> scripted;
    /// As at the top of a program's main loop.
    sigc::connection handler = Glib::add_exception_handler([this] { shell.tellCurrentException(); });
};

INSTANTIATE_TEST_SUITE_P(
    Everywhere, ThrowingClosing,
    testing::Combine(testing::Values("getProgramName", "hasArchiveLogic", "getDataStream", "onStop",
                                     "onFinished", "model's onClosing", "onClosing", "saveXmlConfig",
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
    thrower.set("");
}

} // namespace
} // namespace KesTest
