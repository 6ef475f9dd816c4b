#pragma once

#include <chrono>
#include <functional>

namespace KesTest {

/// Runs the main loop until the predicate holds; false when the limit has passed first. The predicate is
/// asked after every dispatched event and every few milliseconds. Main thread.
bool waitFor(const std::function<bool()>& predicate,
             std::chrono::milliseconds limit = std::chrono::seconds(10));

/// Runs the main loop until nothing is waiting in it. Main thread.
void runPendingEvents();

} // namespace KesTest
