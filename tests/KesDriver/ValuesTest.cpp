#include "RecordingListener.h"

#include <KesDriver/OutputCheck.h>

#include <limits>

using namespace KesDriver;
using KesTest::message;

namespace {

TEST(OutputCheck, NamesChannelValueAndLimit)
{
    constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        OutputState outputs;
        const char* english;
    };
    const Case cases[] = {
        {{{{{32.0, 720.0}, {}, {}}}, {{{300.0, -1.0}, {}, {}}}, 50.0}, ""},
        {{{{{}, {32.5, 0.0}, {}}}, {}, 50.0}, "IB: 32.5 A is above the limit of 32 A."},
        {{{}, {{{}, {}, {1e9, 0.0}}}, 50.0}, "UC: 1000000000 V is above the limit of 300 V."},
        {{{{{notANumber, 0.0}, {}, {}}}, {}, 50.0}, "IA: the value is not a number."},
        {{{{{std::numeric_limits<double>::infinity(), 0.0}, {}, {}}}, {}, 50.0},
         "IA: inf A is above the limit of 32 A."},
        {{{{{1.0, notANumber}, {}, {}}}, {}, 50.0}, "IA: the phase is not a number."},
        {{{}, {}, 5.0}, "Frequency: 5 Hz is below the limit of 10 Hz."},
    };
    for (const auto& [outputs, english] : cases)
        EXPECT_EQ(message(checkOutputs(outputs, {})), english);
}

TEST(OutputCheck, NamesTheStepOfASequence)
{
    OutputSequence sequence(3, OutputStep{{}, DeviceTime(1), std::nullopt});
    sequence[1].endOn = InputCondition{9, true};
    EXPECT_EQ(message(checkSequence(sequence, {})),
              "Step 2. Binary input 9 does not exist: the device has 8.");
    sequence[1].endOn.reset();
    sequence[2].duration = DeviceTime(0);
    EXPECT_EQ(message(checkSequence(sequence, {})),
              "Step 3. Duration: 0 s is below the limit of 0.000001 s.");
    sequence[2].duration = DeviceTime::min();
    EXPECT_FALSE(checkSequence(sequence, {}));
}

} // namespace
