#include <KesMeasure/RunClock.h>
#include <KesMeasure/ScreenNumber.h>

#include <gtest/gtest.h>

using KesMeasure::RunClock;
using namespace std::chrono_literals;

TEST(RunClockTest, TellsWhereARunIsAndWhatIsLeft)
{
    RunClock clock({10.0, 30.0, 60.0});
    clock.beginStep();
    EXPECT_EQ(clock.getTimes().remaining, 100.0) << "before the device has told a time";
    clock.setTime(1000s);
    clock.setTime(1004s);
    auto times = clock.getTimes();
    EXPECT_NEAR(times.share, 0.04, 1e-9);
    EXPECT_EQ(times.elapsed, 4.0);
    EXPECT_EQ(times.remaining, 96.0);
    // Longer than expected: it does not run into the next one.
    clock.setTime(1025s);
    times = clock.getTimes();
    EXPECT_LT(times.share, 0.1);
    EXPECT_EQ(times.remaining, 90.0);
    clock.beginStep();
    clock.extendStep(50.0);
    times = clock.getTimes();
    EXPECT_EQ(times.remaining, 140.0);
    EXPECT_GT(times.share, 0.09) << "never back, though the whole has become longer";
    clock.setTime(900s);
    EXPECT_EQ(clock.getTimes().elapsed, 25.0) << "nor do the times, whatever the device tells";
    clock.beginStep();
    clock.setTime(1200s);
    times = clock.getTimes();
    EXPECT_EQ(times.remaining, 0.0);
    EXPECT_LT(times.share, 1.0);
}

TEST(RunClockTest, TimesReadLikeAClock)
{
    using KesMeasure::ScreenNumber::duration;
    EXPECT_EQ(duration(-1.0), "0:00");
    EXPECT_EQ(duration(59.6), "1:00");
    EXPECT_EQ(duration(3599.0), "59:59");
    EXPECT_EQ(duration(3725.0), "1:02:05");
}
