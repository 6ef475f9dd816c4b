#pragma once

#include <KesCommon/Export.h>

#include <chrono>
#include <functional>
#include <memory>

namespace Kes {

/// Notices that the main loop has stopped: a function of the GUI thread does not return, or the whole process
/// stood still. Then the user can stop nothing at the window.
class KES_EXPORT MainLoopWatch {
public:
    /// `onStandstill` is called once for each standstill that lasts longer, on a thread of the watch, while
    /// the main loop still stands or just after. It must not throw.
    MainLoopWatch(std::chrono::milliseconds longest, std::function<void()> onStandstill);
    /// Waits for the function. GUI thread.
    ~MainLoopWatch();
    MainLoopWatch(const MainLoopWatch&) = delete;
    MainLoopWatch& operator=(const MainLoopWatch&) = delete;

    /// Begins to watch, from this moment on, or ends it. Nothing is watched at first. Any thread.
    void watch(bool isOn);

private:
    class State;

    const std::shared_ptr<State> _state;
};

} // namespace Kes
