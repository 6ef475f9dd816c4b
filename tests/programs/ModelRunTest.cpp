#include <Overcurrent/model/OvercurrentModel.h>

#include <KesCommon/Worker.h>

#include <support/ProgramRunTest.h>

#include <atomic>
#include <future>
#include <utility>

using namespace Overcurrent;
using namespace std::chrono_literals;
using KesProgram::RunVerdict;
using testing::HasSubstr;

namespace {

class ModelRunTest : public KesTest::ProgramRunTest<OvercurrentModel> {
protected:
    ModelRunTest() : ProgramRunTest(2000) {}

    bool isOutputZero() { return getDevice()->getOutputs().currents[0].magnitude == 0.0; }
};

} // namespace

TEST_F(ModelRunTest, RefusesWhatCannotBeRunOrPutOut)
{
    TestPlan plan;
    plan.timeout = 1.0;
    ASSERT_TRUE(model.setPlan(plan));
    EXPECT_FALSE(model.startTest());
    EXPECT_THAT(takeTexts(), HasSubstr("The time-out of 1 s is too short"));
    ASSERT_TRUE(model.setPlan({}));
    for (const char* current : {KesTree::RelayNodes::NominalCurrent, KesTree::RelayNodes::SettingCurrent})
        ASSERT_TRUE(model.getTestObject()->find(current)->setValue(5.0));
    ASSERT_TRUE(runToEnd());
    EXPECT_FALSE(hasPutOut);
    EXPECT_THAT(takeTexts(), HasSubstr("20 × Is is 100 A"));
    EXPECT_FALSE(model.getResults());
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::None);
}

TEST_F(ModelRunTest, IsStoppedAtOnceInEveryPhase)
{
    // Each phase takes minutes or more of the device's time, those before it next to nothing.
    model.setSpeed(500);
    auto& stage = *model.getTestObject();
    ASSERT_TRUE(stage.find(KesTree::RelayNodes::Curve)
                    ->setValue(static_cast<long long>(CurveKind::ExtremelyInverse)));
    ASSERT_TRUE(stage.find(KesTree::RelayNodes::CurrentTolerance)->setValue(0.0));
    TestPlan plan;
    plan.timeout = 2100.0;
    plan.pickUpTolerancePercent = 1.0;
    plan.pickUp = {0.99, 1.2, 0.002, 10.0};
    plan.dropOff = {1.2, 0.8, 0.002, 10.0};
    const struct {
        const char* phase;
        std::vector<double> multiples;
    } cases[] = {
        {"Point 1 ", {1.02}}, {"Point 4 ", {20, 20, 20, 1.02}}, {"Pick-up", {20}}, {"Drop-off", {20}}};
    for (const auto& test : cases) {
        plan.multiples = test.multiples;
        plan.pickUp.from = test.phase == std::string("Pick-up") ? 0.5 : 0.99;
        ASSERT_TRUE(model.setPlan(plan));
        finishes = 0;
        std::atomic<bool> isReached = false;
        Kes::ScopedConnection connection = model.signalStateChanged.connect([&] {
            if (model.getState().rfind(test.phase, 0) == 0)
                isReached = true;
        });
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(KesTest::waitFor([&] { return isReached.load(); })) << test.phase << takeTexts();
        // From here on the device's clock all but stands still: a run that waits for anything on it never
        // ends.
        EXPECT_TRUE(getDevice()->setSpeed(1e-3));
        model.stopTest();
        ASSERT_TRUE(KesTest::waitFor([this] { return finishes > 0; })) << test.phase;
        EXPECT_EQ(finishes, 1);
        EXPECT_TRUE(isOutputZero());
        EXPECT_EQ(model.getRunVerdict(), RunVerdict::Stopped) << test.phase;
        EXPECT_EQ(model.getResults()->end, RunEnd::Stopped);
    }
}

TEST_F(ModelRunTest, AFaultInTheMiddleOfAStepEndsTheRunOnceWithOneText)
{
    using Device = KesDriver::SimulatedKesto;
    struct {
        const char* text;
        void (*fail)(Device&);
    } const cases[] = {
        {"Overload", [](Device& device) { device.simulateOverload(0); }},
        {"Quick shutdown", [](Device& device) { device.simulateQuickShutdown(); }},
        {"Connection error", [](Device& device) { device.simulateConnectionLoss(); }},
        {"127.0.0.1", [](Device& device) { device.setNonsense(true); }},
        {"Connection error",
         [](Device& device) {
             device.setTimeout(1s);
             device.setAnswerDelay(2s);
         }},
    };
    const auto device = getDevice();
    std::atomic<int> texts{0};
    Kes::ScopedConnection told = model.signalMessage.connect([&texts](const std::string&) { ++texts; });
    model.setSpeed(1);
    for (const auto& test : cases) {
        finishes = 0;
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(KesTest::waitFor([this] { return !isOutputZero(); }));
        test.fail(*device);
        EXPECT_TRUE(KesTest::waitFor([this] { return isOutputZero(); }));
        ASSERT_TRUE(KesTest::waitFor([this] { return finishes > 0; })) << test.text;
        EXPECT_EQ(finishes, 1);
        EXPECT_EQ(model.getRunVerdict(), RunVerdict::Fault) << test.text;
        EXPECT_EQ(model.getResults()->end, RunEnd::Fault);
        EXPECT_THAT(takeTexts(), HasSubstr(test.text));
        EXPECT_EQ(texts.exchange(0), 1) << test.text;
        device->setNonsense(false);
        device->setAnswerDelay(0ms);
        device->clearFaults();
    }
}

TEST_F(ModelRunTest, AFaultToldWhileTheRunBeginsIsNoStop)
{
    std::promise<void> isHeard;
    Kes::ScopedConnection heard =
        model.getHardware()->signalAvary.connect([&, isFirst = true](KesDriver::KesAvary&) mutable {
            if (std::exchange(isFirst, false))
                isHeard.set_value();
        });
    Kes::ScopedConnection running = model.signalRunningChanged.connect([&] {
        if (!model.isRunning())
            return;
        // The wait lets go of the signal gate.
        Kes::Worker("Kes_Bench", [&] {
            getDevice()->simulateOverload(0);
            isHeard.get_future().wait_for(1s);
        }).wait();
    });
    ASSERT_TRUE(runToEnd());
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::Fault);
    getDevice()->clearFaults();
}
