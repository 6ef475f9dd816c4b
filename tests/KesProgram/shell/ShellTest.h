#pragma once

#include "ShellDoubles.h"

#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Log.h>

#include <mutex>
#include <string>
#include <vector>

namespace KesTest {

/// A test with a model and a shell of its own in an empty home.
class ShellTest : public GuiTest {
protected:
    /// Ends a run and closes the program, so that each test also is one of an orderly end.
    ~ShellTest() override
    {
        model.endRun();
        if (shell.getView() && !model.isClosing)
            model.close();
        if (shell.getView()) {
            EXPECT_TRUE(waitFor([this] { return isClosed; }));
        }
    }

    void open()
    {
        shell.open(nullptr);
        EXPECT_TRUE(waitFor([this] { return shell.getWindow().get_mapped(); }));
        record.take();
    }

    bool isWindowSeen() { return shell.getWindow().get_visible(); }

    TemporaryHome home;
    Record record;
    ShellModel model{record};
    ShellPresenter shell{model, record};
    bool isClosed = false;
    sigc::connection closedConnection = shell.signalClosed.connect([this] { isClosed = true; });
};

/// Collects the warnings that go to the log.
class LogWarnings {
public:
    LogWarnings()
        : _previous(KesLog::Log::setObserver([this](KesLog::Log::Level level, const std::string& text) {
              std::lock_guard lock(_mutex);
              if (level == KesLog::Log::Level::Warn)
                  _texts.push_back(text);
          }))
    {}
    ~LogWarnings() { KesLog::Log::setObserver(std::move(_previous)); }
    LogWarnings(const LogWarnings&) = delete;
    LogWarnings& operator=(const LogWarnings&) = delete;

    std::vector<std::string> get() const
    {
        std::lock_guard lock(_mutex);
        return _texts;
    }

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _texts;
    KesLog::Log::Observer _previous;
};

} // namespace KesTest
