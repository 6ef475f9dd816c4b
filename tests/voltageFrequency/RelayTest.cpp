#include <KesDriver/simulated/relays/RelayCatalog.h>
#include <KesDriver/simulated/relays/VoltageFrequencyRelay.h>

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using KesDriver::DeviceTime;
using KesDriver::InputEvent;
using KesDriver::VoltageFrequencyRelay;
using testing::IsEmpty;

namespace {

/// Plays outputs to a relay as a device does, on a clock of its own.
class Player {
public:
    explicit Player(KesDriver::ISimulatedTestObject& relay) : _relay(relay) { relay.reset(_time); }

    /// The changes that come while the outputs stand, or the frequency follows the ramp, for the time.
    std::vector<InputEvent> play(double volts, double hertz, DeviceTime duration, double hertzPerSecond = 0.0)
    {
        std::vector<InputEvent> changes;
        const auto end = _time + duration;
        const auto pace = hertzPerSecond == 0.0 ? duration : DeviceTime(1ms);
        for (auto begin = _time; begin < end; begin += pace) {
            const double seconds = std::chrono::duration<double>(begin - (end - duration)).count();
            _apply(volts, hertz + hertzPerSecond * seconds, begin);
            take(std::min(begin + pace, end), changes);
        }
        _time = end;
        return changes;
    }

private:
    void _apply(double volts, double hertz, DeviceTime time)
    {
        KesDriver::OutputState outputs;
        const double phase = volts / std::sqrt(3.0);
        outputs.voltages = {{{phase, 0.0}, {phase, -120.0}, {phase, 120.0}}};
        outputs.voltageHertz = hertz;
        _relay.applyOutputs(outputs, time);
        _time = time;
    }
    void take(DeviceTime end, std::vector<InputEvent>& changes)
    {
        for (auto next = _relay.getNextChange(); next && next->time <= end; next = _relay.getNextChange()) {
            EXPECT_GE(next->time, _time);
            _time = next->time;
            changes.push_back(*next);
            _relay.acceptChange();
        }
    }

    KesDriver::ISimulatedTestObject& _relay;
    DeviceTime _time{0};
};

/// Between the beginning and the contact's change; below zero: none.
double secondsTo(const std::vector<InputEvent>& changes, unsigned input, bool isClosed, DeviceTime from)
{
    for (const auto& change : changes)
        if (change.input == input && change.isClosed == isClosed)
            return std::chrono::duration<double>(change.time - from).count();
    return -1.0;
}

} // namespace

TEST(VoltageFrequencyRelayTest, EachStageStartsAndOperatesALittleOffItsSetting)
{
    const struct {
        double volts;
        double hertz;
        double rate;
        double delay;
    } cases[] = {{79.0, 50.0, 0.0, 1.0},
                 {117.0, 50.0, 0.0, 0.5},
                 {100.0, 48.9, 0.0, 0.5},
                 {100.0, 51.1, 0.0, 0.5},
                 {100.0, 50.0, -1.1, 0.3}};
    for (const auto& test : cases) {
        VoltageFrequencyRelay relay{{}};
        Player player(relay);
        (void)player.play(100.0, 50.0, 5s);
        EXPECT_THAT(player.play(100.0, 50.0, 5s), IsEmpty()) << "it rests";
        const auto duration = test.rate == 0.0 ? DeviceTime(5s) : DeviceTime(800ms);
        const auto changes = player.play(test.volts, test.hertz, duration, test.rate);
        EXPECT_NEAR(secondsTo(changes, 2, true, 10s), 0.06, 0.04) << test.volts << " " << test.hertz;
        EXPECT_NEAR(secondsTo(changes, 1, true, 10s), test.delay + 0.01, 0.01)
            << test.volts << " " << test.hertz;
        const auto after = player.play(100.0, 50.0, 5s);
        EXPECT_NEAR(secondsTo(after, 1, false, 10s + duration), 0.05, 0.04);
        EXPECT_NEAR(secondsTo(after, 2, false, 10s + duration), 0.05, 0.04);
    }
    // Within its deviation and its drop-off nothing happens.
    VoltageFrequencyRelay relay{{}};
    Player player(relay);
    (void)player.play(100.0, 50.0, 5s);
    EXPECT_THAT(player.play(81.0, 50.0, 5s), IsEmpty());
    EXPECT_THAT(player.play(100.0, 49.01, 5s), IsEmpty());
    EXPECT_THAT(player.play(100.0, 50.0, 700ms, -0.95), IsEmpty());
    (void)player.play(79.0, 50.0, 5s);
    EXPECT_THAT(player.play(83.5, 50.0, 5s), IsEmpty()) << "above its drop-off only";
}

TEST(VoltageFrequencyRelayTest, StagesShareTheContacts)
{
    VoltageFrequencyRelay relay{{}};
    Player player(relay);
    (void)player.play(100.0, 50.0, 5s);
    EXPECT_EQ(player.play(79.0, 48.9, 5s).size(), 2u) << "each contact closes once";
    EXPECT_THAT(player.play(100.0, 48.9, 5s), IsEmpty()) << "one stage still holds them";
    EXPECT_EQ(player.play(100.0, 50.0, 5s).size(), 2u);
    // A relay without voltage measures no frequency, but sees that it is low.
    (void)player.play(0.0, 50.0, 5s);
    EXPECT_THAT(player.play(0.0, 40.0, 5s), IsEmpty());
}

TEST(VoltageFrequencyRelayTest, IsAlwaysTheSame)
{
    VoltageFrequencyRelay relay{{}};
    std::vector<std::vector<InputEvent>> runs;
    for (int i = 0; i < 2; ++i) {
        Player player(relay);
        (void)player.play(100.0, 50.0, 5s);
        runs.push_back(player.play(79.0, 48.0, 5s));
    }
    EXPECT_EQ(runs[0], runs[1]);
}

TEST(VoltageFrequencyRelayTest, IsMadeByName)
{
    std::shared_ptr<KesDriver::ISimulatedTestObject> relay;
    const auto make = [&relay](const std::vector<std::string>& settings) {
        return static_cast<bool>(KesDriver::RelayCatalog::make("voltage-frequency", settings, relay));
    };
    ASSERT_TRUE(make({"U<=60", "tU<=0.2", "rate=0", "f<=0", "trip=4", "start=3"}));
    Player player(*relay);
    (void)player.play(100.0, 50.0, 5s);
    EXPECT_THAT(player.play(79.0, 45.0, 500ms, -2.0), IsEmpty());
    const auto changes = player.play(59.0, 50.0, 1s);
    EXPECT_NEAR(secondsTo(changes, 4, true, 5500ms), 0.21, 0.01);
    for (const char* wrong : {"U<=-1", "tU<=0", "U<", "rate=x", "trip=0", "u<=60"})
        EXPECT_FALSE(make({wrong})) << wrong;
}
