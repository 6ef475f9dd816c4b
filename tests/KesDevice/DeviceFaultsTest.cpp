// Faults of devices at the worst moment: the configuration and its devices are what they say they are.

#include <support/Bench.h>
#include <support/MainLoop.h>
#include <support/Message.h>
#include <support/Record.h>

#include <gmock/gmock.h>

#include <future>

using namespace KesDevice;
using namespace KesTest;
using namespace std::chrono_literals;
using testing::Each;
using testing::HasSubstr;
using testing::Not;

namespace {

class DeviceFaultsTest : public testing::Test {
protected:
    void listenTo(HardwareManager& configuration)
    {
        configuration.signalAvary.connect([this](KesDriver::KesAvary&) { record.write("fault"); });
        configuration.signalKestoState.connect([this](Kesto*, const char* text) { record.write(text); });
    }
    void start()
    {
        ASSERT_TRUE(hardware->prepare());
        ASSERT_TRUE(hardware->startWorkingMode());
    }
    Record record;
    BenchDevice first{1};
    BenchDevice second{2};
    std::unique_ptr<HardwareManager> hardware = HardwareManager::create();
};

TEST_F(DeviceFaultsTest, AStartIsNotCutInSilenceWhenAnAttemptBesideItFails)
{
    first.addTo(*hardware);
    listenTo(*hardware);
    first->setAnswerDelay(300ms);
    auto asking = std::async(std::launch::async, [this] { return first.askState(); });
    ASSERT_TRUE(waitFor([this] { return first.isReached(); }));
    first->setAnswerDelay(0ms);
    start();
    ASSERT_TRUE(first.putOut(1.0));
    // What the attempt is told next makes no sense; nothing else is told.
    first->setSilent(true);
    first->setNonsense(true);
    first->setSilent(false);
    (void)asking.get();
    first->setNonsense(false);
    // As a fault or, when the device was heard talking nonsense only later, as that.
    EXPECT_TRUE(waitFor([this] { return first.isPuttingOut() || !record.take().empty(); }));
}

TEST_F(DeviceFaultsTest, AHealthyDeviceWhoseAnswerIsLateIsNotAccusedOfNonsense)
{
    first.addTo(*hardware);
    listenTo(*hardware);
    first->setTimeout(300ms);
    KesDriver::OutputStep passed{{}, 1ms, KesDriver::InputCondition{1, false}}; // Open already.
    const KesDriver::OutputSequence sequence{passed, passed, {{}, 1h, {}}};
    for (int round = 0; round < 4; ++round) {
        start();
        // The first step is being told while the call gives up.
        std::promise<void> isGivenUp;
        Kes::ScopedConnection connection =
            first.onStep([givenUp = isGivenUp.get_future().share()](const KesDriver::StepEvent& event) {
                if (event.step == 0)
                    givenUp.wait_for(900ms);
            });
        first->setAnswerDelay(600ms);
        EXPECT_FALSE(first.runSequence(sequence));
        isGivenUp.set_value();
        first->setAnswerDelay(0ms);
        EXPECT_TRUE(waitFor([this] { return record.has("fault"); })) << "its connection is lost";
        ASSERT_THAT(record.take(), Each(Not(HasSubstr("make no sense")))) << "round " << round;
        EXPECT_TRUE(hardware->stopWorkingMode());
    }
}

TEST_F(DeviceFaultsTest, ADeviceThatIsOffAlreadyIsNotSaidToBeOn)
{
    first.addTo(*hardware);
    second.addTo(*hardware);
    hardware->setIsStopOnFault(true);
    listenTo(*hardware);
    for (int round = 0; round < 150; ++round) {
        start();
        first->simulateConnectionLoss();
        const auto end = std::chrono::steady_clock::now() + round % 15 * 14us;
        while (std::chrono::steady_clock::now() < end) {
        }
        second->simulateConnectionLoss();
        ASSERT_TRUE(waitFor([this] { return record.has("fault"); }));
        EXPECT_TRUE(hardware->stopWorkingMode());
        ASSERT_THAT(record.take(), Each(Not(HasSubstr("does not obey")))) << "round " << round;
    }
}

} // namespace
