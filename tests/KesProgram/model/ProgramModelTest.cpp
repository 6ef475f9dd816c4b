#include "RecordingModel.h"

#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Language.h>
#include <KesDevice/HardwareControl.h>
#include <KesDriver/EmbeddedNetwork.h>
#include <KesProgram/model/AvaryMessage.h>

#include <barrier>

namespace {

using namespace KesTest;
using testing::ElementsAre;

class ProgramModelTest : public GuiTest {
protected:
    TemporaryHome home;
};

TEST_F(ProgramModelTest, RefusedPreparationGivesTheStartBack)
{
    RecordingModel model;
    model._setCanProgramStart(true);
    model.prepareStartAnswer = false;
    model.take();
    EXPECT_FALSE(model.startTest());
    EXPECT_THAT(model.take(), ElementsAre("canStart", "onPrepareStart", "canStart"));
    EXPECT_TRUE(model.getCanStart());
}

TEST_F(ProgramModelTest, ClosingDuringAStartRefusesIt)
{
    RecordingModel model;
    model._setCanProgramStart(true);
    model.take();
    model.onEntry = [&](const std::string& entry) {
        if (entry == "onPrepareStart")
            model.close();
    };
    EXPECT_FALSE(model.startTest());
    ASSERT_TRUE(waitFor([&] { return model.has("closed"); }));
    EXPECT_THAT(model.take(),
                ElementsAre("canStart", "onClosing", "closing", "onPrepareStart", "canStart", "closed"));
}

TEST_F(ProgramModelTest, ChecksBeforeARunComeInTheirOrder)
{
    KesDevice::HardwareControl::setGlobalInstance(KesDevice::HardwareManager::create(), true);
    RecordingModel model;
    EXPECT_FALSE(model.prepareRealHardware());
    EXPECT_THAT(model.take(),
                ElementsAre("message: Error on starting test. The hardware configuration does not contain "
                            "operational KESTOs."));

    ASSERT_TRUE(model.getHardware()->addKesto(KesDriver::embeddedAddress));
    ASSERT_TRUE(model.getHardware()->prepare());
    ASSERT_TRUE(model.getHardware()->startWorkingMode());
    EXPECT_FALSE(model.prepareRealHardware());
    EXPECT_THAT(
        model.take(),
        testing::Contains("message: Error on starting test. The output process has already started."));
    ASSERT_TRUE(model.getHardware()->stopWorkingMode());
    model.getHardware()->getSyncManager().setActiveMode(KesDevice::SyncModeKind::PowerNetwork);
    model.take();
    EXPECT_FALSE(model.prepareRealHardware());
    const auto entries = model.take();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(std::count(entries[0].begin(), entries[0].end(), '\n'), 2);
    EXPECT_THAT(entries[0],
                testing::EndsWith(std::string(":\n") +
                                  KesDevice::SyncMode::get(KesDevice::SyncModeKind::PowerNetwork).getName()));
}

TEST_F(ProgramModelTest, OwnConfigurationIsMadeOnFirstUseAndStartsWithoutDevices)
{
    RecordingModel model;
    model.isLocal = true;
    model.init();
    model.take();
    auto* first = model.getHardware();
    EXPECT_NE(first, KesDevice::HardwareControl::getInstance());
    EXPECT_EQ(model.getHardware(), first);
    EXPECT_TRUE(first->getKestos().empty());
    EXPECT_TRUE(first->getVirtualChannels().isControlGroupsEnabled());
    EXPECT_TRUE(first->isStopOnFault() && first->isStatusReported());

    auto hardware = KesDevice::HardwareManager::create();
    auto* second = hardware.get();
    model.setHardware(hardware, false);
    EXPECT_EQ(model.getHardware(), second);
    EXPECT_TRUE(second->isStopOnFault() && second->isStatusReported());
    EXPECT_THAT(model.take(), ElementsAre("hardwareChanged"));

    KesDriver::KesAvary avary;
    second->signalAvary.emit(avary);
    EXPECT_EQ(model.take().size(), 1u);
    KesDevice::HardwareControl::setGlobalInstance(KesDevice::HardwareManager::create(), true);
    EXPECT_THAT(model.take(), ElementsAre());
}

TEST_F(ProgramModelTest, DeviceStateNamesTheDevice)
{
    RecordingModel model;
    model.init();
    model.take();
    auto& hardware = *model.getHardware();
    const auto address = *KesDevice::Kesto::Address::parse("10.1.2.3");
    const auto kesto = KesDevice::Kesto::create(address, hardware.getNetwork()->createLink(address));
    hardware.signalKestoState.emit(kesto.get(), "is warm");
    model.getHardware()->signalKestoState.emit(nullptr, "all is warm");
    EXPECT_THAT(model.take(), ElementsAre("message: [KESTO: 10.1.2.3] is warm", "message: all is warm"));
    EXPECT_THROW(model._onHardwareStatusChanged(nullptr), std::logic_error);
}

TEST_F(ProgramModelTest, ExceptionInTheTestBodySwitchesTheOutputOff)
{
    const std::vector<std::pair<std::function<void(RecordingModel&)>, std::string>> bodies{
        {[](RecordingModel&) { throw std::runtime_error("no such point"); }, "no such point"},
        {[](RecordingModel&) { throw Glib::FileError(Glib::FileError::FAILED, "no such file"); },
         "no such file"},
        {[](RecordingModel&) { throw 1; }, "An unknown error occurred."},
    };
    RecordingModel model;
    model.init();
    model._setCanProgramStart(true);
    for (const auto& [body, text] : bodies) {
        model.body = body;
        model.take();
        ASSERT_TRUE(model.startTest());
        ASSERT_TRUE(waitFor([&] { return model.has("finished(true)"); }));
        EXPECT_TRUE(model.has("message: " + text));
        EXPECT_EQ(model.count("onFinishHardware"), 1u);
        EXPECT_TRUE(model.getCanStart() && model.hasRunFailed());
    }
    model.body = {};
    model.take();
    ASSERT_TRUE(model.startTest());
    EXPECT_TRUE(waitFor([&] { return model.has("finished(true)"); }));
    EXPECT_FALSE(model.hasRunFailed()) << "that was the run before";
}

TEST_F(ProgramModelTest, StopAndFaultAtOnceStopOnlyOnce)
{
    constexpr std::size_t rounds = 5000;
    RecordingModel model;
    model.init();
    std::barrier together(2);
    std::thread device([&] {
        KesDriver::KesAvary avary;
        for (std::size_t i = 0; i < rounds; ++i) {
            together.arrive_and_wait();
            model.getHardware()->signalAvary.emit(avary);
            together.arrive_and_wait();
        }
    });
    model.take();
    for (std::size_t i = 0; i < rounds; ++i) {
        model._setCanProgramStop(true);
        together.arrive_and_wait();
        // Until the fault has come as far.
        for (std::atomic<std::size_t> left = 10 * (i % 100); left > 0; --left) {
        }
        model.stopTest();
        together.arrive_and_wait();
    }
    device.join();
    EXPECT_EQ(model.count("onStop"), rounds);
    EXPECT_EQ(model.count("canStop"), 2 * rounds);
}

TEST_F(ProgramModelTest, ClosedArrivesOnTheGuiThreadAndNotFromADeadModel)
{
    std::thread::id closedOn;
    const auto close = [&] {
        auto model = std::make_unique<RecordingModel>();
        model->init();
        model->signalClosed.connect([&] { closedOn = std::this_thread::get_id(); });
        model->close();
        return model;
    };
    close().reset();
    runPendingEvents();
    EXPECT_EQ(closedOn, std::thread::id());
    const auto model = close();
    ASSERT_TRUE(waitFor([&] { return model->has("closed"); }));
    EXPECT_EQ(closedOn, std::this_thread::get_id());
    model->getHardware()->signalStatusChanged.emit("late");
    EXPECT_EQ(model->getState(), "") << "its hooks may be gone when a device reports";
}

TEST(AvaryMessageTest, NamesDeviceChannelAndKind)
{
    KesDriver::KesAvary avary{3, 17, true, true, {{"", true, true, true}, {"UB", false, false, false}}};
    EXPECT_EQ(KesProgram::_createAvaryMessage(avary),
              "Fault KESTO-3 No. 00017\nConnection error\nQuick shutdown\n"
              "??? - \xD0\xA1hannel is disconnected\n??? - Overheat\n??? - Overload");
    lng::language = lng::Russian;
    avary.channels = {{"IA", true, false, false}};
    EXPECT_EQ(KesProgram::_createAvaryMessage(avary),
              "Авария КЕСТО-3 № 00017\nОшибка связи\nОперативное отключение\nIA - Канал отключен");
    lng::language = lng::English;
}

} // namespace
