#include "RecordingModel.h"

#include "support/GuiTest.h"
#include "support/TemporaryHome.h"

#include <KesCommon/Directories.h>
#include <KesCommon/Language.h>
#include <KesDevice/HardwareControl.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/model/AvaryMessage.h>

#include <glibmm/fileutils.h>
#include <gmock/gmock.h>

#include <atomic>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace KesTest {

/// Outside the unnamed namespace: its name becomes a folder name.
class PlainModel : public KesProgram::ProgramModel {
public:
    using ProgramModel::_getProgrammCacheDirectory;

    KesProgram::RunVerdict getRunVerdict() override { return KesProgram::RunVerdict::None; }
    std::unique_ptr<std::istream> getDataStream() override
    {
        return std::make_unique<std::stringstream>("x");
    }

protected:
    void _onStart() override { _finish(); }
};

class ClosingModel : public RecordingModel {
protected:
    bool _onPrepareStart() override
    {
        close();
        return true;
    }
};

class LocalModel : public RecordingModel {
public:
    bool usesLocalHardware() override { return true; }
};

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ProgramModelTest : public GuiTest {
protected:
    TemporaryHome home;
};

/// Puts a configuration of the test's own in place and a harmless one back at the end.
class GlobalHardware {
public:
    explicit GlobalHardware(std::unique_ptr<KesDevice::HardwareManager> hardware)
    {
        KesDevice::HardwareControl::setGlobalInstance(std::move(hardware), true);
    }
    ~GlobalHardware()
    {
        KesDevice::HardwareControl::setGlobalInstance(KesDevice::HardwareManager::create(), true);
    }
};

TEST_F(ProgramModelTest, PlainModelHasTheDefaults)
{
    PlainModel model;
    EXPECT_EQ(model.getArchiveManager(), nullptr);
    model.init();
    EXPECT_EQ(model.getExtension(), "???");
    EXPECT_TRUE(model.hasArchiveLogic());
    ASSERT_NE(model.getArchiveManager(), nullptr);
    EXPECT_TRUE(model.getArchiveManager()->isNew());
    EXPECT_EQ(model.getProgramName(), "");
    EXPECT_EQ(model.createReport(), "");
    EXPECT_EQ(model.getTestObject(), nullptr);
    EXPECT_EQ(model.getHardware(), KesDevice::HardwareControl::getInstance());
    EXPECT_FALSE(model.getCanStart());
    EXPECT_FALSE(model.startTest());
    EXPECT_EQ(model.getFileRecentManager(), model.getFileRecentManager());
    EXPECT_EQ(model._getProgrammCacheDirectory(), Kes::getKesCrossAppCacheDir() + "PlainModel/");
    EXPECT_THAT(model.getHelpFileName(), testing::EndsWith("Help/en-US/Help.pdf"));
}

TEST_F(ProgramModelTest, OnlyNamedFilesEnterTheRecentList)
{
    PlainModel model;
    model.init();
    const std::string path = home.file("a.arc");
    ASSERT_TRUE(model.getArchiveManager()->saveAs(path));
    model.getArchiveManager()->create("");
    EXPECT_THAT(model.getFileRecentManager()->getCollection(), ElementsAre(path));
}

TEST_F(ProgramModelTest, HelpNameLosesItsSuffixesOnceInOrder)
{
    EXPECT_EQ(KesProgram::_getBaseHelpName("DistanceProgramModel"), "Distance");
    EXPECT_EQ(KesProgram::_getBaseHelpName("ModelProgram"), "Model");
    EXPECT_EQ(KesProgram::_getBaseHelpName("DistanceModel"), "Distance");
    EXPECT_EQ(KesProgram::_getBaseHelpName("Distance"), "Distance");
    EXPECT_EQ(KesProgram::_getBaseHelpName("XModelModel"), "XModel");
}

TEST_F(ProgramModelTest, SettersEmitOnlyRealChanges)
{
    RecordingModel model;
    model._setState("");
    model._setCanProgramStart(false);
    EXPECT_THAT(model.take(), ElementsAre());
    model._setCanProgramStop(true);
    model._setCanProgramStop(true);
    EXPECT_THAT(model.take(), ElementsAre("canStop", "running"));
    EXPECT_TRUE(model.getCanStop());
    model._onHardwareStatusChanged("ready");
    model._onHardwareStatusChanged("ready");
    EXPECT_THAT(model.take(), ElementsAre("state"));
    EXPECT_THROW(model._onHardwareStatusChanged(nullptr), std::logic_error);
}

TEST_F(ProgramModelTest, FinishOnAnIdleModelTellsOnlyThatItHasFinished)
{
    RecordingModel model;
    model._setCanProgramStart(true);
    model.take();
    model._finish();
    EXPECT_THAT(model.take(), ElementsAre("onFinishHardware", "onFinished", "finished(false)"));
}

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
    ClosingModel model;
    model._setCanProgramStart(true);
    model.take();
    EXPECT_FALSE(model.startTest());
    ASSERT_TRUE(waitFor([&] { return model.has("closed"); }));
    EXPECT_THAT(model.take(), ElementsAre("canStart", "onClosing", "closing", "canStart", "closed"));
}

TEST_F(ProgramModelTest, ChecksBeforeARunComeInTheirOrder)
{
    KesDevice::HardwareControl::getInstance(); // The simulated device comes with the first configuration.
    GlobalHardware global(KesDevice::HardwareManager::create());
    RecordingModel model;
    EXPECT_FALSE(model.prepareRealHardware());
    EXPECT_THAT(model.take(),
                ElementsAre("message: Error on starting test. The hardware configuration does not contain "
                            "operational KESTOs."));

    ASSERT_TRUE(model.getHardware()->getKestos().addKesto(
        std::make_unique<KesDevice::Kesto>(*KesDevice::Kesto::Address::parse("127.0.0.1"))));
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

TEST_F(ProgramModelTest, GlobalConfigurationIsAnnouncedThroughTheGlobalSignalOnly)
{
    RecordingModel model;
    model.init();
    EXPECT_THAT(model.take(), ElementsAre("hardwareChanged"));
    auto hardware = KesDevice::HardwareManager::create();
    auto* expected = hardware.get();
    model.setHardware(hardware, true);
    EXPECT_EQ(model.getHardware(), expected);
    EXPECT_THAT(model.take(), ElementsAre("hardwareChanged"));
}

TEST_F(ProgramModelTest, OwnConfigurationIsMadeOnFirstUseAndStartsWithoutDevices)
{
    LocalModel model;
    model.init();
    model.take();
    auto* first = model.getHardware();
    EXPECT_NE(first, KesDevice::HardwareControl::getInstance());
    EXPECT_EQ(model.getHardware(), first);
    EXPECT_TRUE(first->getKestos().empty());
    EXPECT_TRUE(first->getVirtualChannels().isControlGroupsEnabled());

    auto hardware = KesDevice::HardwareManager::create();
    auto* second = hardware.get();
    model.setHardware(hardware, false);
    EXPECT_EQ(model.getHardware(), second);
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
    KesDevice::Kesto kesto(*KesDevice::Kesto::Address::parse("10.1.2.3"));
    model.getHardware()->signalKestoState.emit(&kesto, "is warm");
    model.getHardware()->signalKestoState.emit(nullptr, "all is warm");
    EXPECT_THAT(model.take(), ElementsAre("message: [KESTO: 10.1.2.3] is warm", "message: all is warm"));
    EXPECT_THROW(model.getHardware()->signalKestoState.emit(nullptr, nullptr), std::logic_error);
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
        EXPECT_TRUE(model.getCanStart());
    }
}

TEST_F(ProgramModelTest, PowerOffDuringARunDisconnectsAtItsEnd)
{
    auto configuration = KesDevice::HardwareManager::create();
    ASSERT_TRUE(configuration->getKestos().addKesto(
        std::make_unique<KesDevice::Kesto>(*KesDevice::Kesto::Address::parse("127.0.0.1"))));
    GlobalHardware global(std::move(configuration));
    RecordingModel model;
    model.init();
    model.prepareHardware = [&] { return model.prepareRealHardware(); };
    model.body = [](RecordingModel& self) {
        self.bodyDoor.waitUntilOpenOr([&] { return !self.isRunning(); });
        self.write("stopped");
        self._finish();
    };
    model.bodyDoor.close();
    auto& hardware = *model.getHardware();
    ASSERT_FALSE(hardware.getKestos().empty());
    model._setCanProgramStart(true);
    ASSERT_TRUE(model.startTest());
    ASSERT_TRUE(waitFor([&] { return model.has("onStart"); }));
    EXPECT_TRUE(hardware.isOutputRunning());
    EXPECT_FALSE(model.getCanStart());
    auto* kesto = hardware.getKestos().getItems().front();
    EXPECT_TRUE(kesto->isConnected());
    model.beginDisconnect();
    ASSERT_TRUE(waitFor([&] { return model.has("finished(true)"); }));
    EXPECT_FALSE(kesto->isConnected());
    EXPECT_FALSE(hardware.isOutputRunning());
}

TEST_F(ProgramModelTest, StopAndFaultAtOnceStopOnlyOnce)
{
    RecordingModel model;
    model.init();
    for (int round = 0; round < 200; ++round) {
        model._setCanProgramStop(true);
        model.take();
        std::atomic<bool> go{false};
        std::thread device([&] {
            while (!go)
                std::this_thread::yield();
            KesDriver::KesAvary avary;
            model.getHardware()->signalAvary.emit(avary);
        });
        go = true;
        model.stopTest();
        device.join();
        ASSERT_EQ(model.count("onStop"), 1u);
        ASSERT_EQ(model.count("canStop"), 1u);
    }
}

TEST_F(ProgramModelTest, ClosedArrivesOnTheGuiThread)
{
    RecordingModel model;
    model.init();
    std::thread::id closedOn;
    model.signalClosed.connect([&] { closedOn = std::this_thread::get_id(); });
    model.close();
    ASSERT_TRUE(waitFor([&] { return model.has("closed"); }));
    EXPECT_EQ(closedOn, std::this_thread::get_id());
}

TEST_F(ProgramModelTest, DyingBeforeClosedIsDeliveredDropsIt)
{
    bool closed = false;
    {
        RecordingModel model;
        model.init();
        model.signalClosed.connect([&] { closed = true; });
        model.close();
    }
    runPendingEvents();
    EXPECT_FALSE(closed);
}

struct AvaryRow {
    KesDriver::KesAvary avary;
    lng::Language language;
    const char* text;
};

TEST(AvaryMessageTest, NamesDeviceChannelAndKind)
{
    const std::vector<AvaryRow> rows{
        {{3, 17, false, false, {}}, lng::English, "Fault KESTO-3 No. 00017"},
        {{3, 17, true, false, {{"A", false, true, true}}},
         lng::English,
         "Fault KESTO-3 No. 00017\nConnection error\nA - Overheat\nA - Overload"},
        {{3, 17, false, true, {{"", true, true, true}, {"UB", false, false, false}}},
         lng::English,
         "Fault KESTO-3 No. 00017\nQuick shutdown\n??? - \xD0\xA1hannel is disconnected\n??? - Overheat\n"
         "??? - Overload"},
        {{3, 17, true, true, {{"IA", true, false, false}}},
         lng::Russian,
         "Авария КЕСТО-3 № 00017\nОшибка связи\nОперативное отключение\nIA - Канал отключен"},
    };
    for (auto row : rows) {
        lng::language = row.language;
        EXPECT_EQ(KesProgram::_createAvaryMessage(row.avary), row.text);
    }
    lng::language = lng::English;
}

} // namespace
} // namespace KesTest
