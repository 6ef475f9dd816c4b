#include <KesCommon/Language.h>
#include <KesDriver/KestoIdentifer.h>
#include <KesDriver/OutputCheck.h>

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace KesDriver;

namespace {

class Russian {
public:
    Russian() { lng::language = lng::Russian; }
    ~Russian() { lng::language = lng::English; }
};

std::string message(const Kes::Result& result)
{
    return result ? std::string() : result.getError()->getMessage();
}

TEST(KestoIdentifer, ShowsTypeAndSerialNumberInBothLanguages)
{
    EXPECT_EQ(KestoIdentifer(3, 17).toDisplayString(), "KESTO-3 No. 00017");
    EXPECT_EQ(KestoIdentifer(12, 4294967295U).toDisplayString(), "KESTO-12 No. 4294967295");
    EXPECT_EQ(KestoIdentifer(0, 0).toDisplayString(), "KESTO");
    EXPECT_EQ(KestoIdentifer(3, 0).toDisplayString(), "KESTO-3");
    const Russian russian;
    EXPECT_EQ(KestoIdentifer(3, 17).toDisplayString(), "КЕСТО-3 № 00017");
}

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
        {{{{{}, {}, {-0.5, 0.0}}}, {}, 50.0}, "IC: -0.5 A is below the limit of 0 A."},
        {{{}, {{{}, {}, {1e9, 0.0}}}, 50.0}, "UC: 1000000000 V is above the limit of 300 V."},
        {{{{{notANumber, 0.0}, {}, {}}}, {}, 50.0}, "IA: the value is not a number."},
        {{{{{std::numeric_limits<double>::infinity(), 0.0}, {}, {}}}, {}, 50.0},
         "IA: inf A is above the limit of 32 A."},
        {{{{{1.0, notANumber}, {}, {}}}, {}, 50.0}, "IA: the phase is not a number."},
        {{{}, {}, 5.0}, "Frequency: 5 Hz is below the limit of 10 Hz."},
    };
    for (const auto& [outputs, english] : cases)
        EXPECT_EQ(message(checkOutputs(outputs, {})), english);
    const Russian russian;
    EXPECT_EQ(message(checkOutputs(cases[1].outputs, {})), "IB: 32.5 А больше предела 32 А.");
}

TEST(OutputCheck, NamesTheStepOfASequence)
{
    EXPECT_EQ(message(checkSequence({}, {})), "The sequence has no steps.");
    OutputSequence sequence(3, OutputStep{{}, DeviceTime(1), std::nullopt});
    sequence[0].duration = maximumStepDuration;
    sequence[1].endOn = InputCondition{8, true};
    EXPECT_EQ(message(checkSequence(sequence, {})), "");
    sequence[1].endOn->input = 9;
    EXPECT_EQ(message(checkSequence(sequence, {})),
              "Step 2. Binary input 9 does not exist: the device has 8.");
    sequence[1].endOn->input = 0;
    EXPECT_FALSE(checkSequence(sequence, {}));
    sequence[1].endOn.reset();
    sequence[2].duration = DeviceTime(0);
    EXPECT_EQ(message(checkSequence(sequence, {})), "Step 3. Duration: 0 s is below the limit of 1e-06 s.");
    sequence[2].duration = maximumStepDuration + DeviceTime(1000);
    EXPECT_FALSE(checkSequence(sequence, {}));
    sequence[2].duration = DeviceTime::min();
    EXPECT_FALSE(checkSequence(sequence, {}));
}

TEST(OutputCheck, AuxiliarySupplyRange)
{
    EXPECT_TRUE(checkAuxDC(12.0));
    EXPECT_TRUE(checkAuxDC(300.0));
    EXPECT_EQ(message(checkAuxDC(11.0)), "Auxiliary supply: 11 V is below the limit of 12 V.");
    EXPECT_FALSE(checkAuxDC(301.0));
    EXPECT_FALSE(checkAuxDC(std::numeric_limits<double>::quiet_NaN()));
}

} // namespace
