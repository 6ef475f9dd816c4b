#include <KesMeasure/ContactChanges.h>
#include <KesMeasure/StepRunner.h>

#include <programs/KestoBench.h>
#include <programs/WatchedRelay.h>

#include <support/FakeKestoLink.h>

#include <gmock/gmock.h>

#include <future>

using namespace KesMeasure;
using namespace std::chrono_literals;
using KesTest::WatchedRelay;
using Outcome = StepRunner::Outcome;
using testing::HasSubstr;

namespace {

/// A relay of 1.5 A that trips in 100 ms.
class StepRunnerTest : public testing::Test {
protected:
    StepRunnerTest()
    {
        bench.begin(relay);
        guard.contacts = {1, 2};
        guard.resetTime = 2s;
    }

    static KesDriver::OutputStep step(double amperes, KesDriver::DeviceTime limit)
    {
        KesDriver::OutputStep made;
        made.outputs.currents[0].magnitude = amperes;
        made.duration = limit;
        made.endOn = KesDriver::EndCondition({{1, true}}, KesDriver::EndCondition::Join::Any, 5ms);
        return made;
    }

    const std::shared_ptr<WatchedRelay> relay = std::make_shared<WatchedRelay>(1.5, 100ms, 2s);
    KesTest::KestoBench bench{1000};
    KesDevice::Kesto& kesto = *bench.kesto;
    RunControl control;
    StepGuard guard;
};

} // namespace

TEST_F(StepRunnerTest, WaitsForTheContactsAsLongAsTheRelayMayTake)
{
    StepRunner runner(kesto, control);
    for (const double amperes : {2.0, 3.0}) {
        ASSERT_EQ(runner.run(guard, {step(amperes, 10s)}), Outcome::Complete);
        const auto record = runner.getRecord();
        const auto trip = ContactChanges::findFirst(record, {1, true}, guard.debounce);
        ASSERT_TRUE(trip) << amperes;
        EXPECT_EQ(trip->time - record.steps[0], 100ms);
        EXPECT_EQ(record.end->time - record.steps[0], 105ms);
    }
}

TEST_F(StepRunnerTest, RestsLongerForAWarmRelayAndSparesIt)
{
    // A relay of 0.05 A: at 1.4 A, below its setting, it is full in less than 12 s.
    StepRunner runner(kesto, control, HeatBudget({0.05, 4.0, 30.0, 100.0}));
    std::vector<double> rests;
    runner.onCooling = [&](double seconds) { rests.push_back(seconds); };
    EXPECT_EQ(runner.run(guard, {step(1.4, 7s)}), Outcome::Complete);
    EXPECT_TRUE(rests.empty());
    EXPECT_EQ(runner.run(guard, {step(1.4, 7s)}), Outcome::Complete);
    EXPECT_THAT(rests, testing::ElementsAre(testing::Gt(100.0), 0.0)) << "and it is told when it is over";
    EXPECT_EQ(runner.run(guard, {step(1.45, 60s)}), Outcome::TooHot);
    EXPECT_THAT(runner.getError(), HasSubstr("more than it withstands"));
    EXPECT_EQ(relay->largest.load(), 1.4);
}

TEST_F(StepRunnerTest, OnlyTheTimeThatTheCurrentHasFlownHeats)
{
    // The limit of each step would fill three quarters; the relay trips in a tenth of a second.
    StepRunner runner(kesto, control, HeatBudget({0.1, 4.0, 30.0, 100.0}));
    runner.onCooling = [](double) { ADD_FAILURE(); };
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(runner.run(guard, {step(2.0, 17s)}), Outcome::Complete);
}

TEST_F(StepRunnerTest, ADeviceThatNeverEndsIsStoppedButALongStepRunsItsWholeTime)
{
    auto lost = std::async(std::launch::async, [] {
        KesTest::FakeKesto fake;
        const auto silent =
            KesDevice::Kesto::create(KesDevice::Kesto::Address({10, 0, 0, 2}), fake.createLink());
        EXPECT_TRUE(silent->connect() && silent->startWorkingMode());
        RunControl ownControl;
        SequenceRecorder recorder(*silent, ownControl);
        EXPECT_EQ(recorder.run({{{}, 1ms, {}}}), SequenceRecorder::Outcome::Failed);
        EXPECT_EQ(fake.countCalls(KesTest::LinkCall::StopOutputs), 1u);
    });
    EXPECT_TRUE(bench.device->setSpeed(1));
    StepRunner runner(kesto, control);
    EXPECT_EQ(runner.run({}, {step(1.0, 5600ms)}), Outcome::Complete) << runner.getError();
    lost.get();
}

TEST_F(StepRunnerTest, AStopBeforeTheRestBeginsNothing)
{
    StepRunner runner(kesto, control);
    control.stop();
    EXPECT_EQ(runner.run(guard, {step(2.0, 10s)}), Outcome::Stopped);
    EXPECT_EQ(relay->largest.load(), 0.0);
}
