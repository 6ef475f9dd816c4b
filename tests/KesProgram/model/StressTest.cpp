// Ten thousand starts, stops and closings on the simulated device, many at the worst moment, must leave no
// thread, no connection and no memory behind.

#include "support/DefaultHardware.h"
#include "support/GuiTest.h"
#include "support/TemporaryHome.h"
#include "support/ThreadCount.h"

#include <KesDevice/HardwareControl.h>
#include <KesProgram/model/ProgramModel.h>

#include <malloc.h>

#include <array>
#include <condition_variable>
#include <random>
#include <thread>

namespace KesTest {
namespace {

constexpr int rounds = 10000;
constexpr int roundsPerModel = 4;

/// Puts out one ampere for a minute of device time, until it is stopped.
class OutputModel : public KesProgram::ProgramModel {
public:
    std::atomic<int> finished{0};
    std::atomic<bool> closed{false};

    OutputModel()
    {
        signalFinished.connect([this](bool) { ++finished; });
        signalClosed.connect([this] { closed = true; });
    }
    std::string getExtension() override { return {}; }
    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }
    void allowStart() { _setCanProgramStart(true); }

protected:
    void _onStart() override
    {
        auto& kesto = *getHardware()->getKestos().getItems().front();
        KesDriver::OutputStep step;
        step.outputs.currents[0].magnitude = 1.0;
        step.duration = std::chrono::minutes(1);
        if (kesto.runSequence({step})) {
            std::unique_lock lock(_mutex);
            while (isRunning())
                _stopped.wait_for(lock, std::chrono::milliseconds(5));
        }
        _finish();
    }
    void _onStop() override { _stopped.notify_all(); }

private:
    std::mutex _mutex;
    std::condition_variable _stopped;
};

std::array<std::size_t, 5> connections()
{
    auto& hardware = *KesDevice::HardwareControl::getInstance();
    return {KesDevice::HardwareControl::signalHardwareChanged.size(), hardware.signalRunningChanged.size(),
            hardware.signalStatusChanged.size(), hardware.signalAvary.size(),
            hardware.signalKestoState.size()};
}

class Stress : public GuiTest {
protected:
    /// One start and its end; every way of ending and moment of it comes up often.
    void runOnce(OutputModel& model);
    void close(OutputModel& model);

    TemporaryHome home;
    DefaultHardware hardware;
    std::mt19937 random{20};
};

void Stress::runOnce(OutputModel& model)
{
    const int before = model.finished;
    ASSERT_TRUE(waitFor([&] { return model.getCanStart(); }));
    ASSERT_TRUE(model.startTest());
    const auto hasEnded = [&] { return model.finished > before; };
    switch (random() % 4) {
    case 0:
        ASSERT_TRUE(waitFor([&] { return model.isOutputStarted() || hasEnded(); }));
        break;
    case 1:
        ASSERT_TRUE(waitFor([&] { return model.isRunning() || hasEnded(); }));
        break;
    case 2:
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
        break;
    default:
        break;
    }
    switch (random() % 3) {
    case 0:
        model.stopTest();
        break;
    case 1:
        model.beginDisconnect();
        break;
    default: {
        KesDriver::KesAvary avary;
        std::thread([&] { model.getHardware()->signalAvary.emit(avary); }).join();
    }
    }
    // A stop that came before the output runs is none; the run is stopped again until it ends.
    ASSERT_TRUE(waitFor([&] {
        model.stopTest();
        return hasEnded();
    }));
}

void Stress::close(OutputModel& model)
{
    if (random() % 2 && waitFor([&] { return model.getCanStart(); })) {
        ASSERT_TRUE(model.startTest());
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
    }
    model.close();
    ASSERT_TRUE(waitFor([&] { return model.closed.load(); }));
    EXPECT_FALSE(KesDevice::HardwareControl::getInstance()->isOutputRunning());
}

TEST_F(Stress, TenThousandStartsStopsAndClosingsLeaveNothingBehind)
{
    const auto live = [this](int count) {
        for (int round = 0; round < count && !HasFatalFailure(); round += roundsPerModel) {
            OutputModel model;
            model.init();
            model.allowStart();
            for (int i = 1; i < roundsPerModel && !HasFatalFailure(); ++i)
                runOnce(model);
            close(model);
        }
    };
    live(rounds / 20);
    const auto threads = countThreads();
    const auto connected = connections();
    const auto bytes = mallinfo2().uordblks;
    live(rounds - rounds / 20);
    EXPECT_EQ(countThreads(), threads);
    EXPECT_EQ(connections(), connected);
    EXPECT_LT(mallinfo2().uordblks, bytes + 256 * 1024);
}

} // namespace
} // namespace KesTest
