#pragma once

#include <chrono>
#include <functional>

namespace KesTest {

/// Runs the main loop until the predicate holds; false when the limit has passed first. The predicate is
/// asked after every dispatched event and every few milliseconds. Main thread.
bool waitFor(const std::function<bool()>& predicate,
             std::chrono::milliseconds limit = std::chrono::seconds(10));

/// Runs the main loop until nothing is waiting in it. Not while another thread goes on posting, which
/// may be faster than the loop. Main thread.
void runPendingEvents();

/// Lets the main loop turn so many times without waiting, whatever goes on coming in. Main thread.
void turnMainLoop(int times);

} // namespace KesTest
