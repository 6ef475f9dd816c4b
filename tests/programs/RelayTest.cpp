#include <Overcurrent/bench/BenchRelay.h>
#include <Overcurrent/data/OperateCurve.h>
#include <Overcurrent/data/RelaySettings.h>

#include <KesDriver/simulated/relays/RelayCatalog.h>

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

using namespace Overcurrent;
using namespace std::chrono_literals;
using KesDriver::DeviceTime;
using KesDriver::InputEvent;

namespace {

/// Plays currents to a relay as a device does, on a clock of its own.
class Player {
public:
    explicit Player(KesDriver::ISimulatedTestObject& relay) : _relay(relay) { relay.reset(DeviceTime(0)); }

    /// The changes that come while the current (in amperes) stands for the time.
    std::vector<InputEvent> play(double amperes, DeviceTime duration)
    {
        KesDriver::OutputState outputs;
        outputs.currents[0].magnitude = amperes;
        _relay.applyOutputs(outputs, _time);
        const auto end = _time + duration;
        std::vector<InputEvent> changes;
        for (auto next = _relay.getNextChange(); next && next->time <= end; next = _relay.getNextChange()) {
            EXPECT_GE(next->time, _time);
            _time = next->time;
            changes.push_back(*next);
            _relay.acceptChange();
        }
        _time = end;
        return changes;
    }

private:
    KesDriver::ISimulatedTestObject& _relay;
    DeviceTime _time{0};
};

DeviceTime operateTime(const std::vector<InputEvent>& changes, DeviceTime from)
{
    for (const auto& change : changes)
        if (change.input == RelaySettings().tripInput && change.isClosed)
            return change.time - from;
    return DeviceTime(-1);
}

} // namespace

TEST(SimulatedRelayTest, OperatesALittleOffTheIdealCurveAlwaysTheSame)
{
    for (const auto curve :
         {CurveKind::StandardInverse, CurveKind::VeryInverse, CurveKind::ExtremelyInverse,
          CurveKind::LongTimeInverse, CurveKind::DefiniteTimeCurve, CurveKind::IeeeModeratelyInverse,
          CurveKind::IeeeVeryInverse, CurveKind::IeeeExtremelyInverse})
        for (const double multiple : {1.5, 2.0, 5.0, 20.0}) {
            RelaySettings settings;
            settings[StageId::First].settingCurrent = 0.4;
            settings[StageId::First].curve = curve;
            const auto relay = makeBenchRelay(settings, TestPlan());
            Player first(*relay);
            const auto time = operateTime(first.play(multiple * 0.4, 400s), DeviceTime(0));
            const double ideal = *OperateCurve::operateTime(settings[StageId::First], multiple);
            const double measured = std::chrono::duration<double>(time).count();
            EXPECT_NE(measured, ideal);
            EXPECT_NEAR(measured, ideal, OperateCurve::tolerance(settings, multiple, ideal))
                << curve << " at " << multiple;
            Player second(*relay);
            EXPECT_EQ(operateTime(second.play(multiple * 0.4, 400s), DeviceTime(0)), time);
        }
}

TEST(SimulatedRelayTest, AddsUpWhatItHasTravelledAndForgetsItAtDropOff)
{
    const RelaySettings settings;
    const auto relay = makeBenchRelay(settings, TestPlan());
    Player whole(*relay);
    const auto alone = operateTime(whole.play(2.0, 30s), DeviceTime(0));
    // The same travel in two parts; the current in between is above drop-off, but does not move it.
    Player parts(*relay);
    parts.play(2.0, 4s);
    parts.play(0.98, 10s);
    const auto difference = operateTime(parts.play(2.0, 30s), 14s) + 4s - alone;
    EXPECT_LE(std::abs(difference.count()), 2);
    // Below drop-off the travel is lost.
    Player reset(*relay);
    reset.play(2.0, 9s);
    reset.play(0.0, 1s);
    EXPECT_GT(operateTime(reset.play(2.0, 30s), 10s), 9s);
}

TEST(SimulatedRelayTest, ItsStagesAreSetByNames)
{
    using Settings = std::vector<std::string>;
    const auto tripAfter = [](const Settings& settings, double amperes) {
        std::shared_ptr<KesDriver::ISimulatedTestObject> relay;
        const auto made = KesDriver::RelayCatalog::make("overcurrent", settings, relay);
        EXPECT_TRUE(made) << (made ? "" : made.getError()->getMessage());
        Player player(*relay);
        return std::chrono::duration<double>(operateTime(player.play(amperes, 100s), DeviceTime(0))).count();
    };
    const Settings stages{"pickup=1", "curve=TABLE", "table=2:10;4:5", "pickup2=6", "curve2=DT", "time2=0.2"};
    EXPECT_NEAR(tripAfter(stages, 2.83), 7.07, 0.3);
    EXPECT_NEAR(tripAfter(stages, 5.0), 5.0, 0.2);
    EXPECT_NEAR(tripAfter(stages, 7.0), 0.2, 0.03);
    EXPECT_LT(tripAfter(stages, 1.5), 0.0) << "below its first pair";
    EXPECT_NEAR(tripAfter({"pickup=0", "pickupN=0.2", "curveN=DT", "timeN=0.7"}, 0.3), 0.7, 0.03);
    EXPECT_LT(tripAfter({"curve=DT", "direction=FORWARD"}, 3.0), 0.0) << "without voltages";
    EXPECT_LT(tripAfter({"curve=DT", "connection=N"}, 3.0), 0.0) << "all in the residual input";
    std::shared_ptr<KesDriver::ISimulatedTestObject> relay;
    for (const char* wrong :
         {"table=2", "table=4:1;2:2", "direction=UP", "angle=181", "connection=D", "curve4=DT"})
        EXPECT_FALSE(KesDriver::RelayCatalog::make("overcurrent", {wrong}, relay)) << wrong;
}
