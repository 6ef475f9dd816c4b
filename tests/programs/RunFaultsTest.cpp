// Devices that fail in the middle of a measurement: the outputs go off, the run ends, and its verdict says
// why.

#include <Overcurrent/model/OvercurrentModel.h>

#include <KesCommon/Worker.h>
#include <KesDevice/HardwareControl.h>

#include <support/Bench.h>
#include <support/GuiTest.h>
#include <support/Message.h>
#include <support/Record.h>
#include <support/TemporaryHome.h>

#include <future>
#include <random>
#include <utility>

using namespace Overcurrent;
using namespace std::chrono_literals;
using KesDevice::HardwareControl;
using KesDevice::HardwareManager;
using KesProgram::RunVerdict;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// In real time, so that every step is a long one.
class OvercurrentFaults : public KesTest::GuiTest {
protected:
    OvercurrentFaults()
    {
        auto configuration = HardwareManager::create();
        device.addTo(*configuration);
        HardwareControl::setGlobalInstance(std::move(configuration), true);
        early = HardwareControl::getInstance()->signalAvary.connect(
            [this](KesDriver::KesAvary&) { spin(hearing); });
        model.setSpeed(1);
        model.init();
        model.signalFinished.connect([this](bool outputStarted) {
            hasRun = outputStarted;
            ++finishes;
        });
        model.signalMessage.connect([this](const std::string& text) { texts.write(text); });
    }
    ~OvercurrentFaults() override
    {
        device->setNonsense(false);
        device->setAnswerDelay(0ms);
        model.stopTest();
        EXPECT_TRUE(KesTest::waitFor([this] { return model.getCanStart(); }));
    }

    /// Begins a step that takes minutes.
    void putOut()
    {
        auto& stage = *model.getTestObject();
        ASSERT_TRUE(stage.find(KesTree::RelayNodes::Curve)
                        ->setValue(static_cast<long long>(CurveKind::ExtremelyInverse)));
        TestPlan plan;
        plan.timeout = 2100.0;
        plan.multiples = {1.1};
        ASSERT_EQ(KesTest::message(model.setPlan(plan)), "");
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(KesTest::waitFor([this] { return device.isPuttingOut(); })) << "no current";
    }
    void expectEndWithOneText()
    {
        EXPECT_TRUE(KesTest::waitFor([this] { return !device.isPuttingOut(); }, 3s))
            << "the current flows on";
        EXPECT_TRUE(KesTest::waitFor([this] { return finishes > 0; }, 3s)) << "the run goes on";
        EXPECT_THAT(texts.take(), ElementsAre(AnyOf(HasSubstr(device.getAddress()), HasSubstr("00001"))));
        EXPECT_EQ(model.getRunVerdict(), RunVerdict::Fault);
    }

    static void spin(std::chrono::microseconds time)
    {
        const auto end = std::chrono::steady_clock::now() + time;
        while (std::chrono::steady_clock::now() < end) {
        }
    }

    /// How long somebody takes who hears of a fault before the model does.
    std::atomic<std::chrono::microseconds> hearing{0us};
    KesTest::TemporaryHome home;
    KesTest::BenchDevice device{1};
    KesTest::Record texts;
    std::atomic<int> finishes{0};
    std::atomic<bool> hasRun{false};
    OvercurrentModel model;
    Kes::ScopedConnection early;
};

TEST_F(OvercurrentFaults, NonsenseInTheMiddleOfAStepEndsTheRunWithOneText)
{
    ASSERT_NO_FATAL_FAILURE(putOut());
    device->setNonsense(true);
    expectEndWithOneText();
}

TEST_F(OvercurrentFaults, AnswersThatComeTooLateEndTheRunWithOneText)
{
    ASSERT_NO_FATAL_FAILURE(putOut());
    device->setTimeout(2s);
    device->setAnswerDelay(3s);
    expectEndWithOneText();
}

TEST_F(OvercurrentFaults, AFaultToldWhileTheRunBeginsIsNoStop)
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
            device->simulateOverload(0);
            isHeard.get_future().wait_for(1s);
        }).wait();
    });
    ASSERT_TRUE(model.startTest());
    ASSERT_TRUE(KesTest::waitFor([this] { return finishes > 0; }));
    EXPECT_EQ(model.getRunVerdict(), RunVerdict::Fault);
    device->clearFaults();
}

TEST_F(OvercurrentFaults, AFaultRightAfterSwitchingOnIsNoStop)
{
    std::mt19937 random{3};
    int others = 0;
    constexpr int rounds = 300;
    for (int round = 0; round < rounds; ++round) {
        std::promise<void> isOn;
        std::atomic<bool> isTold{false};
        const auto tell = [&](bool isRunning) {
            if (isRunning && !isTold.exchange(true))
                isOn.set_value();
        };
        // At first the outputs are on, then the run begins.
        Kes::ScopedConnection on =
            round % 2 ? model.getHardware()->signalRunningChanged.connect(tell)
                      : model.signalRunningChanged.connect([&, tell] { tell(model.isRunning()); });
        const std::chrono::microseconds delay(random() % 100);
        hearing = std::chrono::microseconds(random() % 100);
        auto failing = std::async(std::launch::async, [&, isOn = isOn.get_future()] {
            if (isOn.wait_for(5s) != std::future_status::ready)
                return;
            spin(delay);
            device->simulateOverload(0);
        });
        finishes = 0;
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(KesTest::waitFor([this] { return finishes > 0; }));
        failing.get();
        if (hasRun && model.getRunVerdict() != RunVerdict::Fault)
            ++others;
        device->clearFaults();
    }
    EXPECT_EQ(others, 0) << "of " << rounds;
}

} // namespace
