// The relays of the simulated bench, which programs and kesto-sim wire to devices.

#include <KesDriver/simulated/relays/RelayCatalog.h>

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using KesDriver::DeviceTime;
using KesDriver::InputEvent;
using testing::IsEmpty;

namespace {

KesDriver::OutputState amperes(double value)
{
    KesDriver::OutputState outputs;
    outputs.currents[0].magnitude = value;
    return outputs;
}

KesDriver::OutputState volts(double value, double hertz)
{
    KesDriver::OutputState outputs;
    const double phase = value / std::sqrt(3.0);
    outputs.voltages = {{{phase, 0.0}, {phase, -120.0}, {phase, 120.0}}};
    outputs.voltageHertz = hertz;
    return outputs;
}

const auto healthy = volts(100.0, 50.0);

/// Plays outputs to a relay as a device does, on a clock of its own.
class Player {
public:
    explicit Player(const std::string& name, const std::vector<std::string>& settings = {})
    {
        const auto made = KesDriver::RelayCatalog::make(name, settings, _relay);
        EXPECT_TRUE(made) << (made ? "" : made.getError()->getMessage());
        _relay->reset(_time);
    }

    /// The changes that come while the outputs stand, or their frequency follows the ramp, for the time.
    std::vector<InputEvent> play(KesDriver::OutputState outputs, DeviceTime duration,
                                 double hertzPerSecond = 0.0)
    {
        _changes.clear();
        _begin = _time;
        const auto pace = hertzPerSecond == 0.0 ? duration : DeviceTime(1ms);
        for (const auto end = _time + duration; _time < end;) {
            _relay->applyOutputs(outputs, _time);
            _take(std::min(_time + pace, end));
            outputs.voltageHertz += hertzPerSecond * std::chrono::duration<double>(pace).count();
        }
        return _changes;
    }
    /// From the beginning of the last outputs to the contact's change; below zero: none.
    double secondsTo(unsigned input, bool isClosed) const
    {
        for (const auto& change : _changes)
            if (change.input == input && change.isClosed == isClosed)
                return std::chrono::duration<double>(change.time - _begin).count();
        return -1.0;
    }
    double tripAfter(const KesDriver::OutputState& outputs, DeviceTime duration)
    {
        (void)play(outputs, duration);
        return secondsTo(1, true);
    }

private:
    void _take(DeviceTime end)
    {
        for (auto next = _relay->getNextChange(); next && next->time <= end; next = _relay->getNextChange()) {
            EXPECT_GE(next->time, _time);
            _time = next->time;
            _changes.push_back(*next);
            _relay->acceptChange();
        }
        _time = end;
    }

    std::shared_ptr<KesDriver::ISimulatedTestObject> _relay;
    std::vector<InputEvent> _changes;
    DeviceTime _begin{0};
    DeviceTime _time{0};
};

void expectRefused(const std::string& name, const std::vector<std::string>& settings)
{
    std::shared_ptr<KesDriver::ISimulatedTestObject> relay;
    for (const auto& wrong : settings)
        EXPECT_FALSE(KesDriver::RelayCatalog::make(name, {wrong}, relay)) << wrong;
}

} // namespace

TEST(OvercurrentRelayTest, AddsUpWhatItHasTravelledAndForgetsItAtDropOff)
{
    const double alone = Player("overcurrent").tripAfter(amperes(2.0), 30s);
    EXPECT_NEAR(alone, 10.03, 0.5);
    // The same travel in two parts; the current in between is above drop-off, but does not move it.
    Player parts("overcurrent");
    (void)parts.play(amperes(2.0), 4s);
    (void)parts.play(amperes(0.98), 10s);
    EXPECT_NEAR(parts.tripAfter(amperes(2.0), 30s) + 4.0, alone, 2e-6);
    // Below drop-off the travel is lost.
    Player reset("overcurrent");
    (void)reset.play(amperes(2.0), 9s);
    (void)reset.play(amperes(0.0), 1s);
    EXPECT_GT(reset.tripAfter(amperes(2.0), 30s), 9.0);
}

TEST(OvercurrentRelayTest, ItsStagesAreSetByNames)
{
    using Settings = std::vector<std::string>;
    const auto tripAfter = [](const Settings& settings, double current) {
        return Player("overcurrent", settings).tripAfter(amperes(current), 200s);
    };
    for (const auto& [curve, seconds] : {std::pair("SI", 10.03),
                                         {"VI", 13.5},
                                         {"EI", 26.67},
                                         {"LTI", 120.0},
                                         {"IEEE-MI", 3.8},
                                         {"IEEE-VI", 7.03},
                                         {"IEEE-EI", 9.52}})
        EXPECT_NEAR(tripAfter({std::string("curve=") + curve}, 2.0), seconds, 0.04 * seconds) << curve;
    const Settings stages{"pickup=1", "curve=TABLE", "table=2:10;4:5", "pickup2=6", "curve2=DT", "time2=0.2"};
    EXPECT_NEAR(tripAfter(stages, 2.83), 7.07, 0.3);
    EXPECT_NEAR(tripAfter(stages, 5.0), 5.0, 0.2);
    EXPECT_NEAR(tripAfter(stages, 7.0), 0.2, 0.03);
    EXPECT_LT(tripAfter(stages, 1.5), 0.0) << "below its first pair";
    EXPECT_NEAR(tripAfter({"pickup=0", "pickupN=0.2", "curveN=DT", "timeN=0.7"}, 0.3), 0.7, 0.03);
    EXPECT_LT(tripAfter({"curve=DT", "direction=FORWARD"}, 3.0), 0.0) << "without voltages";
    EXPECT_LT(tripAfter({"curve=DT", "connection=N"}, 3.0), 0.0) << "all in the residual input";
    expectRefused("overcurrent",
                  {"table=2", "table=4:1;2:2", "direction=UP", "angle=181", "connection=D", "curve4=DT"});
}

TEST(VoltageFrequencyRelayTest, StagesShareTheContactsAndAreAlwaysTheSame)
{
    std::vector<std::vector<InputEvent>> runs;
    for (int i = 0; i < 2; ++i) {
        Player player("voltage-frequency");
        (void)player.play(healthy, 5s);
        runs.push_back(player.play(volts(79.0, 48.9), 5s));
        EXPECT_EQ(runs[0].size(), 2u) << "each contact closes once";
        EXPECT_EQ(runs.back(), runs[0]);
        EXPECT_THAT(player.play(volts(100.0, 48.9), 5s), IsEmpty()) << "one stage still holds them";
        EXPECT_EQ(player.play(healthy, 5s).size(), 2u);
        // A relay without voltage measures no frequency, but sees that it is low.
        (void)player.play(volts(0.0, 50.0), 5s);
        EXPECT_THAT(player.play(volts(0.0, 40.0), 5s), IsEmpty());
    }
}

TEST(VoltageFrequencyRelayTest, IsSetByNames)
{
    Player player("voltage-frequency", {"U<=60", "tU<=0.2", "rate=0", "f<=0", "trip=4", "start=3"});
    (void)player.play(healthy, 5s);
    EXPECT_THAT(player.play(volts(79.0, 45.0), 500ms, -2.0), IsEmpty());
    (void)player.play(volts(59.0, 50.0), 1s);
    EXPECT_NEAR(player.secondsTo(4, true), 0.21, 0.01);
    expectRefused("voltage-frequency", {"U<=-1", "tU<=0", "U<", "rate=x", "trip=0", "u<=60"});
}
