#include <KesMeasure/HeatBudget.h>

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using KesDriver::OutputSequence;
using KesDriver::OutputStep;
using KesMeasure::HeatBudget;

namespace {

OutputStep step(double amperes, KesDriver::DeviceTime duration)
{
    OutputStep made;
    made.outputs.currents[1].magnitude = amperes;
    made.duration = duration;
    return made;
}

/// Of a relay of 5 A.
double shareAfter(double multiple, double seconds)
{
    HeatBudget budget({5.0, 4.0, 30.0, 100.0});
    budget.add(multiple * 5.0, seconds);
    return budget.getShare();
}

} // namespace

TEST(HeatBudgetTest, IsFullAfterTheTimesThatTheRelayWithstands)
{
    EXPECT_NEAR(shareAfter(30.0, 10.0), 1.0, 1e-12);
    EXPECT_NEAR(shareAfter(100.0, 1.0), 1.0, 1e-12);
    EXPECT_EQ(shareAfter(4.0, 1e6), 0.0);
    // 8840 is the I²t of 30 × In for 10 s above the continuous current.
    EXPECT_NEAR(shareAfter(20.0, 10.0), 384.0 * 10.0 / 8840.0, 1e-12);
    EXPECT_GT(shareAfter(32.0, 60.0), 6.0);
    // Between both: more than neither allows.
    EXPECT_LT(shareAfter(60.0, 2.4), 1.0);
    EXPECT_GT(shareAfter(60.0, 2.7), 1.0);
}

TEST(HeatBudgetTest, AddsUpAndCoolsDownToCold)
{
    HeatBudget budget({1.0, 4.0, 30.0, 100.0});
    budget.add(OutputSequence{step(30.0, 4s), step(30.0, 4s)});
    EXPECT_NEAR(budget.getShare(), 0.8, 1e-12);
    EXPECT_NEAR(budget.getPeak({step(30.0, 5s), step(0.0, 3600s)}), 1.3, 1e-12);
    HeatBudget later({1.0, 4.0, 30.0, 100.0});
    later.follow(budget, 0.0);
    EXPECT_EQ(later.getShare(), budget.getShare());
    later.follow(budget, 60.0);
    EXPECT_LT(later.getShare(), budget.getShare());
    budget.add(0.0, 3600.0);
    EXPECT_EQ(budget.getShare(), 0.0);
}

TEST(HeatBudgetTest, TellsHowLongToRestBefore)
{
    const OutputSequence pulse{step(0.0, 1s), step(30.0, 6s)};
    HeatBudget budget({1.0, 4.0, 30.0, 100.0});
    EXPECT_EQ(budget.getRestBefore(pulse), 0.0);
    budget.add(pulse);
    const auto rest = budget.getRestBefore(pulse);
    ASSERT_TRUE(rest);
    EXPECT_GT(*rest, 60.0);
    HeatBudget rested = budget;
    rested.add(0.0, *rest * 0.99);
    EXPECT_GT(rested.getPeak(pulse), 1.0);
    budget.add(0.0, *rest * 1.01);
    EXPECT_LE(budget.getPeak(pulse), 1.0);
    EXPECT_FALSE(budget.getRestBefore({step(30.0, 11s)})) << "too much for a cold input";
}

/// Through the residual input, and through an input that several outputs feed together.
TEST(HeatBudgetTest, TheLargestCurrentOfARampAndTheSumOfThePhasesCount)
{
    const HeatBudget budget({1.0, 4.0, 30.0, 100.0});
    auto rising = step(0.0, 5s);
    rising.ramp.currents[1].magnitude = 6.0;
    EXPECT_NEAR(budget.getPeak({rising}), budget.getPeak({step(30.0, 5s)}), 1e-9);
    auto three = step(0.0, 5s);
    for (auto& current : three.outputs.currents)
        current = {10.0, 30.0};
    EXPECT_NEAR(budget.getPeak({three}), budget.getPeak({step(30.0, 5s)}), 1e-9);
    for (std::size_t i = 0; i < 3; ++i)
        three.outputs.currents[i] = {10.0, 120.0 * static_cast<double>(i)};
    EXPECT_NEAR(budget.getPeak({three}), budget.getPeak({step(10.0, 5s)}), 1e-9) << "the sum is zero";
}
