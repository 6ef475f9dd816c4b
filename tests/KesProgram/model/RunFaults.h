#pragma once

#include "RecordingModel.h"

#include "support/Bench.h"
#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/SignalGate.h>
#include <KesDevice/HardwareControl.h>

namespace KesTest {

using namespace std::chrono_literals;

/// A bench with one device; the model's run lasts until it is stopped.
class RunFaults : public GuiTest {
protected:
    RunFaults()
    {
        auto configuration = KesDevice::HardwareManager::create();
        first.addTo(*configuration);
        KesDevice::HardwareControl::setGlobalInstance(std::move(configuration), true);
        model.signalMessage.connect([this](const std::string& text) { texts.write(text); });
        model.prepareHardware = [this] { return model.prepareRealHardware(); };
        model.body = [](RecordingModel& self) {
            self.bodyDoor.waitUntilOpenOr([&] { return !self.isRunning(); });
            self._finish();
        };
        model.bodyDoor.close();
        model.init();
        model._setCanProgramStart(true);
    }
    ~RunFaults() override
    {
        for (auto* device : {&first, &second}) {
            (*device)->setSilent(false);
            (*device)->setAnswerDelay(0ms);
        }
        model.stopTest();
        // Each of its runs: they write into the model's record.
        EXPECT_TRUE(waitFor([this] { return countFinishes() == model.count("onPrepareStart"); }, 10s));
        (void)hardware().stopWorkingMode();
    }

    KesDevice::HardwareManager& hardware() { return *model.getHardware(); }
    void switchOn()
    {
        ASSERT_TRUE(hardware().prepare());
        ASSERT_TRUE(hardware().startWorkingMode());
        ASSERT_TRUE(first.putOut(1.0));
    }
    void start() { ASSERT_TRUE(model.startTest()); }
    void startAndRun()
    {
        start();
        ASSERT_TRUE(waitFor([this] { return model.has("onStart"); }));
        ASSERT_TRUE(first.putOut(1.0));
    }
    std::size_t countFinishes() const
    {
        return model.count("finished(true)") + model.count("finished(false)");
    }
    bool waitForFinish(std::chrono::milliseconds limit = 10s)
    {
        return waitFor([this] { return countFinishes() > 0; }, limit);
    }

    TemporaryHome home;
    BenchDevice first{1};
    BenchDevice second{2};
    Record texts;
    RecordingModel model;
};

} // namespace KesTest
