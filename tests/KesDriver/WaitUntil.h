#pragma once

#include <chrono>
#include <thread>

namespace KesTest {

/// For what comes about on other threads without an announcement; false after ten seconds.
template <typename Condition>
bool waitUntil(Condition&& condition)
{
    for (int tries = 0; tries < 10000; ++tries) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return false;
}

} // namespace KesTest
