#include "support/GuiTest.h"

#include <KesCommonView/MainLoopWatch.h>

#include <atomic>
#include <optional>
#include <thread>

namespace {

using namespace std::chrono_literals;
using KesTest::waitFor;

class MainLoopWatchTest : public KesTest::GuiTest {
protected:
    /// Without a turn of the main loop, until it has been noticed so often or the time is over.
    void stand(int until, std::chrono::milliseconds time = 5s)
    {
        const auto end = std::chrono::steady_clock::now() + time;
        while (noticed < until && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(1ms);
    }
    void turn(std::chrono::milliseconds time)
    {
        const auto end = std::chrono::steady_clock::now() + time;
        waitFor([&] { return std::chrono::steady_clock::now() > end; });
    }

    std::atomic<int> noticed{0};
    std::optional<Kes::MainLoopWatch> watch{std::in_place, 400ms, [this] { ++noticed; }};
};

TEST_F(MainLoopWatchTest, EachStandstillIsNoticedOnceAndOnlyWhileWatched)
{
    stand(1, 500ms);
    watch->watch(true);
    turn(500ms);
    EXPECT_EQ(noticed, 0);
    stand(1);
    EXPECT_EQ(noticed, 1);
    stand(2, 700ms);
    EXPECT_EQ(noticed, 1) << "the same standstill";
    turn(100ms);
    stand(2);
    EXPECT_EQ(noticed, 2);
    turn(100ms);
    watch->watch(false);
    stand(3, 500ms);
    EXPECT_EQ(noticed, 2);
    std::thread([this] { watch->watch(true); }).join();
    stand(3);
    EXPECT_EQ(noticed, 3);
    turn(100ms);
    watch.reset();
    stand(4, 500ms);
    turn(100ms);
    EXPECT_EQ(noticed, 3) << "nobody is called after its end";
}

} // namespace
