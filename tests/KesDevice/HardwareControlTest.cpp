#include "TestBench.h"

#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesDevice/detail/HardwareFile.h>

#include <support/DefaultHardware.h>
#include <support/NoThreads.h>
#include <support/TemporaryHome.h>

#include <cstdlib>

using namespace KesTest;
using testing::HasSubstr;

namespace {

class HardwareControlTest : public testing::Test {
protected:
    /// A configuration with the fake's device becomes the global one.
    static Kesto* use(FakeKesto& fake)
    {
        auto hardware = HardwareManager::create();
        auto* kesto = add(*hardware, fake, 4);
        HardwareControl::setGlobalInstance(std::move(hardware), true);
        return kesto;
    }

    TemporaryHome home;
    DefaultHardware defaultHardware;
    std::vector<HardwareManager*> heard;

private:
    const Kes::ScopedConnection _connection = HardwareControl::signalHardwareChanged.connect(
        [this](HardwareManager* hardware) { heard.push_back(hardware); });
};

TEST_F(HardwareControlTest, ReplacementFreesTheDevicesAndTellsEveryone)
{
    const auto previous = HardwareControl::share();
    EXPECT_TRUE(previous->isSimulated()) << "until one is made";
    ASSERT_TRUE(previous->prepare());
    ASSERT_EQ(message(previous->startWorkingMode()), "");
    const Kes::ScopedConnection connection =
        HardwareControl::signalHardwareChanged.connect([&](HardwareManager* hardware) {
            EXPECT_TRUE(hardware->prepare()) << "the device is free";
            EXPECT_FALSE(previous->isOutputRunning());
        });
    auto next = DefaultHardware::create();
    auto* expected = next.get();
    HardwareControl::setGlobalInstance(std::move(next), true);
    EXPECT_THAT(heard, ElementsAre(expected));
    EXPECT_THAT(message(previous->prepare()), HasSubstr("has been replaced"));
    EXPECT_FALSE(std::filesystem::exists(HardwareFile::getPath())) << "temporary";
}

TEST_F(HardwareControlTest, ReplacementWaitsForNothingAndEndsAnOperation)
{
    FakeKesto fake;
    use(fake);
    auto hardware = HardwareControl::share();
    fake.hold(LinkCall::Identify);
    std::thread preparing(
        [hardware] { EXPECT_THAT(message(hardware->prepare()), HasSubstr("disconnected")); });
    ASSERT_TRUE(fake.waitForCall(LinkCall::Identify));
    HardwareControl::setGlobalInstance(DefaultHardware::create(), true);
    preparing.join();
    EXPECT_TRUE(waitUntil([&] { return !fake.isConnected(); }));
}

TEST_F(HardwareControlTest, ANewConfigurationWaitsForTheDevicesOfTheOneBefore)
{
    FakeKesto before, after;
    use(before);
    ASSERT_TRUE(HardwareControl::share()->prepare() && HardwareControl::share()->startWorkingMode());
    before.hold(LinkCall::StopWorkingMode);
    use(after);
    auto preparing = std::async(
        std::launch::async, [hardware = HardwareControl::share()] { return message(hardware->prepare()); });
    EXPECT_EQ(preparing.wait_for(100ms), std::future_status::timeout);
    EXPECT_EQ(after.countCalls(LinkCall::Connect), 0U);
    before.release(LinkCall::StopWorkingMode);
    EXPECT_EQ(preparing.get(), "");
}

TEST_F(HardwareControlTest, EmbeddedConfigurationStandsInForTheGlobalOne)
{
    auto* global = HardwareControl::getInstance();
    auto lent = HardwareManager::create();
    auto* embedded = lent.get();
    HardwareControl::setEmbeddedInstance(std::move(lent), false);
    HardwareControl::setEmbeddedMode(true);
    EXPECT_EQ(HardwareControl::getInstance(), embedded);
    HardwareControl::setEmbeddedMode(false);
    EXPECT_EQ(HardwareControl::getInstance(), global);
    EXPECT_THAT(heard, ElementsAre(global, embedded, global));
}

/// A configuration file; each line matters.
const std::string good = "[Hardware]\nVersion=1\nSyncMode=GPS\nControlGroups=true\nStopOnFault=true\n"
                         "StatusReported=true\nKestos=2\n[Kesto 1]\nAddress=10.0.0.2\nAuxDC=true\n"
                         "AuxDCVolts=110.5\n[Kesto 2]\nAddress=10.0.0.1\nAuxDC=false\nAuxDCVolts=24\n";

TEST_F(HardwareControlTest, ACopyIsKeptOnDiskAndComesBackWhole)
{
    // With one switch off at a time no key can stand in for another one.
    for (const std::string off : {"ControlGroups=", "StopOnFault=", "StatusReported="}) {
        auto text = good;
        text.replace(text.find(off), off.size() + 4, off + "false");
        writeFile(home.file("good.cfg"), text);
        std::string error;
        const auto hardware = HardwareFile::read(home.file("good.cfg"), error);
        ASSERT_TRUE(hardware) << error;
        HardwareControl::setGlobalInstance(hardware->clone(), false);
        auto written = readFile(HardwareFile::getPath());
        std::erase_if(written,
                      [at = '\n'](char c) mutable { return std::exchange(at, c) == '\n' && c == '\n'; });
        EXPECT_EQ(written, text);
        EXPECT_FALSE(HardwareControl::getInstance()->getKestos().getItems()[0]->isConnected());
    }
}

TEST_F(HardwareControlTest, AFileHoldsAThousandDevicesAtMost)
{
    for (const std::size_t count : {1000U, 1001U}) {
        auto text = good;
        text.replace(text.find("Kestos=2"), 8, "Kestos=" + std::to_string(count));
        for (std::size_t i = 3; i <= count; ++i)
            text += "[Kesto " + std::to_string(i) + "]\nAddress=10.1." + std::to_string(i / 250) + "." +
                    std::to_string(i % 250) + "\nAuxDC=false\nAuxDCVolts=24\n";
        writeFile(home.file("hardware.cfg"), text);
        std::string error;
        const auto hardware = HardwareFile::read(home.file("hardware.cfg"), error);
        EXPECT_EQ(hardware ? hardware->getKestos().size() : 0U, count > 1000 ? 0U : count) << error;
    }
}

TEST_F(HardwareControlTest, RefusesDamagedFiles)
{
    const auto path = home.file("hardware.cfg");
    std::string error;
    EXPECT_FALSE(HardwareFile::read(path, error));
    EXPECT_EQ(error, "");
    const std::pair<const char*, const char*> damages[] = {{"Version=1", "Version=2"},
                                                           {"GPS", "Sundial"},
                                                           {"ControlGroups=true", "ControlGroups=maybe"},
                                                           {"Kestos=2", "Kestos=-1"},
                                                           {"Kestos=2", "Kestos=2000000000"},
                                                           {"10.0.0.2", "10.0.0.1"},
                                                           {"10.0.0.1", "10.0.0.256"},
                                                           {"AuxDCVolts=24", "AuxDCVolts=nan"},
                                                           {"AuxDCVolts=24", "AuxDCVolts=999"},
                                                           {"[Hardware]", "Hardware]"}};
    for (const auto& [from, to] : damages) {
        auto damaged = good;
        damaged.replace(damaged.find(from), std::string(from).size(), to);
        writeFile(path, damaged);
        EXPECT_FALSE(HardwareFile::read(path, error)) << to;
        EXPECT_THAT(error, HasSubstr(path)) << to;
    }
    for (std::size_t length = 0; length < good.size() - 20; length += 7) {
        writeFile(path, good.substr(0, length));
        EXPECT_FALSE(HardwareFile::read(path, error)) << length;
    }
}

TEST_F(HardwareControlTest, UpdaterFollowsTheCurrentConfiguration)
{
    auto& updater = KestoStateGlobalUpdater::getInstance();
    updater.setInterval(1ms);

    FakeKesto fake;
    use(fake);
    updater.setUpdating(true);
    ASSERT_TRUE(fake.waitForCall(LinkCall::ReadState, 3));

    // While an output of any configuration runs, nothing is asked.
    const auto other = DefaultHardware::create();
    ASSERT_TRUE(other->prepare() && other->startWorkingMode());
    const auto asked = fake.countCalls(LinkCall::ReadState);
    std::this_thread::sleep_for(20ms);
    EXPECT_LE(fake.countCalls(LinkCall::ReadState), asked + 1);
    ASSERT_TRUE(other->stopWorkingMode() && other->disconnect());
    ASSERT_TRUE(fake.waitForCall(LinkCall::ReadState, asked + 2));

    // Replaced, also in the middle of a question.
    fake.hold(LinkCall::ReadState);
    const auto held = fake.countCalls(LinkCall::ReadState);
    ASSERT_TRUE(fake.waitForCall(LinkCall::ReadState, held + 1));
    HardwareControl::setGlobalInstance(DefaultHardware::create(), true);
    fake.release(LinkCall::ReadState);
    EXPECT_TRUE(waitUntil(
        [] { return HardwareControl::getInstance()->getKestos().getItems()[0]->getOperationError() == ""; }));
    EXPECT_TRUE(waitUntil([&] { return !fake.isConnected(); })) << "on a thread of its own";

    updater.setUpdating(false);
}

TEST_F(HardwareControlTest, SwitchingTheUpdaterOffWaitsForTheUpdate)
{
    auto& updater = KestoStateGlobalUpdater::getInstance();
    FakeKesto fake;
    auto* kesto = use(fake);
    fake.hold(LinkCall::ReadState);
    updater.setUpdating(true);
    ASSERT_TRUE(fake.waitForCall(LinkCall::ReadState));
    std::atomic<bool> isOff{false};
    std::thread switching([&] {
        // With the gate held, which the update needs to announce what it has found.
        Kes::SignalGate::Guard gate;
        updater.setUpdating(false);
        isOff = true;
    });
    EXPECT_TRUE(waitUntil([&] { return !updater.isUpdating(); }));
    EXPECT_FALSE(isOff);
    fake.release(LinkCall::ReadState);
    switching.join();
    EXPECT_EQ(kesto->getOperationError(), "");

    // From inside an update it returns at once.
    kesto->signalOperationErrorChanged.connect(
        [&](const Kes::Nullable<std::string>&) { updater.setUpdating(false); });
    fake.setState({false, false, 0.0, "hot"});
    updater.setUpdating(true);
    EXPECT_TRUE(waitUntil([&] { return !updater.isUpdating(); }));
    updater.setUpdating(false);
}

/// In a process of its own, where the updater has no thread yet.
[[noreturn]] void switchTheUpdaterOnWithoutThreads()
{
    auto& updater = KestoStateGlobalUpdater::getInstance();
    int told = 0;
    updater.signalUpdatingChanged.connect([&](bool) { ++told; });
    {
        const NoThreads noThreads;
        updater.setUpdating(true);
    }
    const bool isOff = !updater.isUpdating() && told == 0;
    updater.setUpdating(true);
    const bool isAsking = waitUntil(
        [] { return HardwareControl::getInstance()->getKestos().getItems()[0]->getOperationError() == ""; });
    std::exit(isOff && isAsking && told == 1 ? 0 : 1);
}

TEST(UpdaterDeathTest, StaysOffWithoutAThreadAndCanBeSwitchedOnLater)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(switchTheUpdaterOnWithoutThreads(), testing::ExitedWithCode(0), "");
}

/// Everything on, and nobody tidies up: the end of the process still comes, and comes cleanly.
[[noreturn]] void endInTheMiddle()
{
    auto* hardware = HardwareControl::getInstance();
    auto* kesto = hardware->getKestos().getItems()[0];
    KestoStateGlobalUpdater::getInstance().setInterval(1ms);
    KestoStateGlobalUpdater::getInstance().setUpdating(true);
    const bool isStarted = hardware->prepare() && hardware->startWorkingMode() &&
                           kesto->auxDC().set(true, 24.0) && kesto->runSequence({{{}, 1h, {}}});
    std::exit(isStarted && HardwareIsRunningComponent::getInstance().isRunning() ? 0 : 1);
}

TEST(ProcessEndDeathTest, ComesCleanlyInTheMiddleOfARun)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(endInTheMiddle(), testing::ExitedWithCode(0), "");
}

} // namespace
