#include "support/Message.h"

#include <KesDriver/KesAvary.h>
#include <KesDriver/OutputCheck.h>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <utility>

using namespace KesDriver;
using KesTest::message;
using namespace std::chrono_literals;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(OutputCheck, NamesChannelValueAndLimit)
{
    const auto outputs = [](unsigned channel, Phasor phasor) {
        OutputState state;
        (channel < 3 ? state.currents : state.voltages)[channel % 3] = phasor;
        return state;
    };
    const std::pair<OutputState, const char*> cases[] = {
        {outputs(0, {32.0, 720.0}), ""},
        {outputs(3, {300.0, -1.0}), ""},
        {outputs(1, {32.5, 0.0}), "IB: 32.5 A is above the limit of 32 A."},
        {outputs(2, {-1e-9, 0.0}), "IC: -1e-09 A is below the limit of 0 A."},
        {outputs(5, {1e9, 0.0}), "UC: 1000000000 V is above the limit of 300 V."},
        {outputs(0, {notANumber, 0.0}), "IA: the value is not a number."},
        {outputs(0, {infinity, 0.0}), "IA: inf A is above the limit of 32 A."},
        {outputs(0, {1.0, notANumber}), "IA: the phase is not a number."},
        {{{}, {}, 10.0, 1000.0}, ""},
        {{{}, {}, 5.0, 5.0}, "Frequency: 5 Hz is below the limit of 10 Hz."},
        {{{}, {}, 5.0, 50.0}, "Frequency of the currents: 5 Hz is below the limit of 10 Hz."},
        {{{}, {}, 50.0, 1001.0}, "Frequency of the voltages: 1001 Hz is above the limit of 1000 Hz."},
        {{{}, {}, 50.0, notANumber}, "Frequency of the voltages: the value is not a number."},
        {{{}, {}, 50.0, 50.0, 0b1111}, ""},
        {{{}, {}, 50.0, 50.0, 0b110000}, "Binary output 5 does not exist: the device has 4."},
    };
    for (const auto& [state, english] : cases)
        EXPECT_EQ(message(checkOutputs(state, {})), english);
}

TEST(OutputCheck, NamesTheStepOfASequence)
{
    using Change = std::function<void(OutputStep&)>;
    const std::pair<Change, const char*> cases[] = {
        {[](OutputStep&) {}, ""},
        {[](OutputStep& step) { step.outputs.voltages[1].magnitude = 301.0; },
         "UB: 301 V is above the limit of 300 V."},
        {[](OutputStep& step) { step.duration = DeviceTime(0); },
         "Duration: 0 s is below the limit of 0.000001 s."},
        {[](OutputStep& step) { step.duration = maximumStepDuration + DeviceTime(1); },
         "Duration: 86400.000001 s is above the limit of 86400 s."},
        // The step lasts 3 s and begins with IA = 1 A, UA = 100 V.
        {[](OutputStep& step) { step.ramp.currents[0].magnitude = -1.0 / 3.0; }, ""},
        {[](OutputStep& step) { step.ramp.currents[0].magnitude = 31.0 / 3.0; }, ""},
        {[](OutputStep& step) { step.ramp.currents[0].magnitude = 11.0; },
         "IA at the end of the ramp: 34 A is above the limit of 32 A."},
        {[](OutputStep& step) { step.ramp.currents[0].magnitude = -1.0; },
         "IA at the end of the ramp: -2 A is below the limit of 0 A."},
        {[](OutputStep& step) { step.ramp.voltages[0].magnitude = notANumber; },
         "UA at the end of the ramp: the value is not a number."},
        {[](OutputStep& step) { step.ramp.voltages[2].degrees = infinity; },
         "UC at the end of the ramp: the phase is not a number."},
        {[](OutputStep& step) { step.ramp.currentHertz = -15.0; },
         "Frequency of the currents at the end of the ramp: 5 Hz is below the limit of 10 Hz."},
        {[](OutputStep& step) { step.ramp.voltageHertz = infinity; },
         "Frequency of the voltages at the end of the ramp: inf Hz is above the limit of 1000 Hz."},
        {[](OutputStep& step) { step.faultDegrees = -infinity; }, "Fault angle: the value is not a number."},
        {[](OutputStep& step) { step.endOn = EndCondition({{9}}, EndCondition::Join::Any); },
         "Binary input 9 does not exist: the device has 8."},
        {[](OutputStep& step) {
             step.endOn = EndCondition({{1}, {0}}, EndCondition::Join::All);
         },
         "Binary input 0 does not exist: the device has 8."},
        {[](OutputStep& step) { step.endOn = EndCondition({}, EndCondition::Join::Any); },
         "The end condition names no binary input."},
        {[](OutputStep& step) { step.endOn = EndCondition({{1}}, EndCondition::Join::Any, 10s); }, ""},
        {[](OutputStep& step) { step.endOn = EndCondition({{1}}, EndCondition::Join::Any, 10s + 1us); },
         "Debounce time: 10.000001 s is above the limit of 10 s."},
        {[](OutputStep& step) { step.endOn = EndCondition({{1}}, EndCondition::Join::Any, -1us); },
         "Debounce time: -0.000001 s is below the limit of 0 s."},
    };
    OutputStep good{{}, 3s};
    good.outputs.currents[0].magnitude = 1.0;
    good.outputs.voltages[0].magnitude = 100.0;
    for (const auto& [change, english] : cases) {
        OutputSequence sequence(3, good);
        change(sequence[1]);
        const std::string expected = *english ? std::string("Step 2. ") + english : "";
        EXPECT_EQ(message(checkSequence(sequence, {})), expected);
    }
    EXPECT_EQ(message(checkSequence({}, {})), "The sequence has no steps.");
    OutputLimits few;
    few.maximumSteps = 2;
    EXPECT_EQ(message(checkSequence(OutputSequence(3, good), few)),
              "The sequence has 3 steps, the limit is 2.");
}

TEST(Faults, AreDescribedOnOneLine)
{
    KesAvary avary;
    EXPECT_EQ(describeFaults(avary), "");
    avary.isQuickShutdown = true;
    avary.channels = {{"IA", true, false, true}, {"", false, true, false}, {"IB", false, false, false}};
    EXPECT_EQ(describeFaults(avary), "the emergency button was pressed; IA - channel is disconnected; "
                                     "IA - overload; ??? - overheat");
}

TEST(Outputs, FollowARamp)
{
    OutputState outputs;
    outputs.currents = {{{10.0, 350.0}, {1.0, 0.0}, {}}};
    outputs.binaryOutputs = 5;
    OutputRamp ramp;
    ramp.currents = {{{-2.0, 20.0}, {-2.0, 0.0}, {}}};
    ramp.voltages[2].magnitude = 100.0;
    ramp.voltageHertz = -4.0;
    const auto later = follow(outputs, ramp, 1500ms);
    EXPECT_EQ(later.currents, (std::array<Phasor, 3>{{{7.0, 380.0}, {0.0, 0.0}, {}}}));
    EXPECT_EQ(later.voltages, (std::array<Phasor, 3>{{{}, {}, {150.0, 0.0}}}));
    EXPECT_EQ(later.currentHertz, 50.0);
    EXPECT_EQ(later.voltageHertz, 44.0);
    EXPECT_EQ(later.binaryOutputs, 5U);
}

} // namespace
