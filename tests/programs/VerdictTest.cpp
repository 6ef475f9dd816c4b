// Whole tests of relays that are what their settings say, and of others. The relay of the bench has
// characteristics of its own and shares none with what judges it.

#include <Overcurrent/bench/BenchRelay.h>
#include <Overcurrent/data/Evaluation.h>
#include <Overcurrent/run/TestRun.h>

#include <programs/KestoBench.h>
#include <support/Message.h>

#include <gtest/gtest.h>

#include <random>

using namespace Overcurrent;
using KesMeasure::Verdict;

namespace {

/// What the program knows of a relay, and how it tests it.
struct Subject {
    RelaySettings settings;
    TestPlan plan;
};

struct Collector : ITestRunListener {
    void onPhase(const RunPhase&) override {}
    void onPoint(std::size_t, const PointResult& result) override { results.points.push_back(result); }
    void onPickUp(const RampResult& result) override { results.pickUp = result; }
    void onDropOff(const RampResult& result) override { results.dropOff = result; }
    TestResults results;
};

/// Of a relay with other settings than the program knows.
Verdict judge(const Subject& subject, const RelaySettings& relay)
{
    const auto& [settings, plan] = subject;
    EXPECT_EQ(KesTest::message(plan.check(settings)), "");
    KesTest::KestoBench bench(100000);
    bench.begin(makeBenchRelay(relay, plan));
    KesMeasure::RunControl control;
    Collector collector;
    collector.results.settings = settings;
    collector.results.plan = plan;
    collector.results.end = TestRun(settings, plan, *bench.kesto, control, collector).execute();
    return Evaluation::verdict(collector.results);
}

double draw(std::mt19937& random, double least, double most)
{
    return least + (most - least) * static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
}

void drawStage(std::mt19937& random, Stage& stage, double setting)
{
    stage.isUsed = true;
    stage.settingCurrent = setting;
    stage.curve = static_cast<CurveKind>(random() % 9);
    stage.timeMultiplier = draw(random, 0.05, 0.5);
    stage.definiteTime = draw(random, 0.05, 1.0);
    stage.table = {{1.02, draw(random, 5.0, 20.0)}};
    while (stage.table.size() < 5)
        stage.table.push_back({stage.table.back().multiple * draw(random, 1.3, 3.0),
                               stage.table.back().seconds * draw(random, 0.3, 1.0)});
}

Subject drawSubject(std::mt19937& random)
{
    Subject subject;
    auto& [settings, plan] = subject;
    plan.multiples = {1.1, 1.3, 2.0, 3.0, 4.9, 5.0, 7.5, 10.0, 15.0, 20.0};
    plan.timeout = 3600.0;
    settings.toleranceKind = static_cast<TimeToleranceKind>(random() % 2);
    settings.toleranceMilliseconds = 40.0;
    settings.characteristicAngle = draw(random, -90.0, 60.0);
    const double first = draw(random, 0.2, 0.8);
    drawStage(random, settings[StageId::First], first);
    if (random() % 2)
        drawStage(random, settings[StageId::Second], first * draw(random, 2.0, 8.0));
    if (random() % 2)
        drawStage(random, settings[StageId::Third], first * draw(random, 8.0, 16.0));
    if (random() % 2)
        drawStage(random, settings[StageId::Residual], first * draw(random, 0.2, 1.5));
    // One stage at least sees each fault.
    const bool isForward = random() % 2;
    plan.direction = isForward ? FaultDirection::Forward : FaultDirection::Reverse;
    const auto same = isForward ? DirectionKind::ForwardOnly : DirectionKind::ReverseOnly;
    for (const auto stage : {StageId::First, StageId::Residual})
        settings[stage].direction = random() % 2 ? same : DirectionKind::NonDirectional;
    for (const auto stage : {StageId::Second, StageId::Third})
        settings[stage].direction = static_cast<DirectionKind>(random() % 3);
    const bool hasResidual = settings[StageId::Residual].isUsed;
    const auto fault = allFaults[random() % (hasResidual ? 8 : 7)];
    plan.faults = {fault};
    if (hasResidual && fault != Fault::N && random() % 2)
        plan.faults.push_back(Fault::N);
    else if (fault == Fault::N || Faults::countPhases(fault) == 1)
        plan.outputsPerPhase = 1 + static_cast<unsigned>(random() % 3);
    return subject;
}

/// By shares of the tolerances of time and current.
RelaySettings off(const RelaySettings& settings, double time, double current)
{
    auto relay = settings;
    for (auto& stage : relay.stages) {
        const double factor = 1.0 + time * settings.tolerancePercent / 100.0;
        stage.timeMultiplier *= factor;
        stage.definiteTime *= factor;
        for (auto& pair : stage.table)
            pair.seconds *= factor;
        stage.settingCurrent *= 1.0 + current * settings.currentTolerancePercent / 100.0;
    }
    return relay;
}

/// Three stages that see something each: a fault between phases at 2 and at 8 × Is, and one to earth.
Subject threeStages()
{
    Subject subject;
    auto& [settings, plan] = subject;
    settings[StageId::Second].isUsed = settings[StageId::Residual].isUsed = true;
    for (auto& stage : settings.stages)
        stage.direction = DirectionKind::ForwardOnly;
    plan.multiples = {2.0, 8.0};
    plan.faults = {Fault::A, Fault::BC};
    plan.goesOn = true;
    return subject;
}

} // namespace

/// The relay of the bench itself is late by about a percent and a contact time.
TEST(VerdictTest, NoHealthyRelayFails)
{
    std::mt19937 random(20240311);
    for (int i = 0; i < 60; ++i) {
        const auto subject = drawSubject(random);
        for (const auto& relay : {off(subject.settings, 0.4, 0.6), off(subject.settings, -0.9, -0.9)})
            EXPECT_EQ(judge(subject, relay), Verdict::Passed) << i;
    }
}

TEST(VerdictTest, NoFaultyRelayPasses)
{
    const auto subject = threeStages();
    EXPECT_EQ(judge(subject, subject.settings), Verdict::Passed);
    const std::pair<const char*, void (*)(Stage&)> faults[] = {
        {"missing", [](Stage& stage) { stage.isUsed = false; }},
        {"turned", [](Stage& stage) { stage.direction = DirectionKind::ReverseOnly; }},
        {"slow", [](Stage& stage) { stage.timeMultiplier *= 1.2, stage.definiteTime *= 1.2; }},
        {"fast", [](Stage& stage) { stage.timeMultiplier *= 0.8, stage.definiteTime *= 0.8; }},
    };
    for (const auto stage : {StageId::First, StageId::Second, StageId::Residual})
        for (const auto& [what, spoil] : faults) {
            auto relay = subject.settings;
            spoil(relay[stage]);
            EXPECT_EQ(judge(subject, relay), Verdict::Failed) << what << " " << static_cast<int>(stage);
        }
    // Within the tolerance of the current, but beyond that of the time.
    for (const double time : {-2.5, 2.5})
        EXPECT_EQ(judge({}, off({}, time, 0.0)), Verdict::Failed) << time;
}

TEST(VerdictTest, ARelayThatPicksUpOrDropsOffElsewhereFails)
{
    Subject subject;
    auto& stage = subject.settings[StageId::First];
    stage.curve = CurveKind::DefiniteTimeCurve;
    for (const auto contact : {RampContactKind::ByStartContact, RampContactKind::ByTripContact}) {
        subject.settings.rampContact = contact;
        subject.plan.minimumRatio = 0.9;
        EXPECT_EQ(judge(subject, subject.settings), Verdict::Passed);
        for (const double factor : {0.93, 1.07}) {
            auto relay = subject.settings;
            relay[StageId::First].settingCurrent *= factor;
            EXPECT_EQ(judge(subject, relay), Verdict::Failed) << factor;
        }
        // It drops off at 0.955 of its pick-up value.
        subject.plan.minimumRatio = 0.98;
        EXPECT_EQ(judge(subject, subject.settings), Verdict::Failed);
    }
}
