#pragma once

#include <chrono>
#include <thread>

namespace KesTest {

/// For what comes about on other threads without an announcement; false after ten seconds.
template <typename Condition>
bool waitUntil(Condition&& condition)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 10s;
    for (int looks = 0; !condition(); ++looks) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        // What is nearly there needs no long sleep.
        std::this_thread::sleep_for(looks < 50 ? 10us : 200us);
    }
    return true;
}

} // namespace KesTest
