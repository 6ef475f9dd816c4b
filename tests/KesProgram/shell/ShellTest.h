#pragma once

#include "ShellDoubles.h"

#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <thread>

namespace KesTest {

/// A test with a model and a shell of its own in an empty home.
class ShellTest : public GuiTest {
protected:
    /// Ends a run and closes the program, so that each test also is one of an orderly end.
    ~ShellTest() override
    {
        model.endRun();
        if (!shell.getView())
            return;
        if (!model.isClosing)
            model.close();
        EXPECT_TRUE(waitFor([this] { return isClosed; }));
    }

    void open()
    {
        shell.open(nullptr);
        EXPECT_TRUE(waitFor([this] { return shell.getWindow().get_mapped(); }));
        record.take();
    }

    bool isWindowSeen() { return shell.getWindow().get_visible(); }

    static void onAnotherThread(const std::function<void()>& function) { std::thread(function).join(); }

    TemporaryHome home;
    Record record;
    ShellModel model{record};
    ShellPresenter shell{model, record};
    bool isClosed = false;
    sigc::connection closedConnection = shell.signalClosed.connect([this] { isClosed = true; });
};

} // namespace KesTest
