#include "SettingsWindowTest.h"

#include "support/NoThreads.h"

#include <KesDevice/HardwareControl.h>

#include <stdexcept>

namespace {

using KesDevice::HardwareManager;
using KesTest::address;
using KesTest::waitFor;

using HardwareManagerPresenterTest = KesTest::SettingsWindowTest;

TEST_F(HardwareManagerPresenterTest, OkHandsOverWhatWasEdited)
{
    hardware->setIsStopOnFault(true);
    open();
    EXPECT_EQ(dynamic_cast<Gtk::Window*>(window)->get_focus(), &addressEntry());
    add("10.1.0.1");
    add("10.1.0.2");
    click("Move 10.1.0.2 up");
    named<Gtk::CheckButton>("Auxiliary supply of 10.1.0.1")->set_active(true);
    const auto chooseMode = [this](KesDevice::SyncModeKind kind) {
        named<Gtk::ComboBox>("Synchronisation mode")->set_active(static_cast<int>(kind));
        return reads("Devices in this mode cannot run sequences");
    };
    EXPECT_TRUE(chooseMode(KesDevice::SyncModeKind::PowerNetwork));
    EXPECT_FALSE(chooseMode(KesDevice::SyncModeKind::GPS));
    auto& volts = *named<Gtk::Entry>("Auxiliary supply voltage of 10.1.0.1, V");
    volts.set_text("301");
    click("OK");
    EXPECT_EQ(confirmations, 0);
    EXPECT_TRUE(reads("Correct the marked values first."));
    EXPECT_EQ(dynamic_cast<Gtk::Window*>(window)->get_focus(), &volts);
    volts.set_text("110,5");
    click("OK");

    EXPECT_FALSE(presenter->getView());
    ASSERT_EQ(confirmations, 1);
    const auto kestos = confirmed->getKestos().getItems();
    ASSERT_EQ(kestos.size(), 2U);
    EXPECT_EQ(kestos[0]->getAddress(), address("10.1.0.2"));
    EXPECT_EQ(kestos[1]->auxDC().getVolts(), 110.5);
    EXPECT_EQ(confirmed->getSyncManager().getActiveMode().getKind(), KesDevice::SyncModeKind::GPS);
    EXPECT_TRUE(confirmed->isStopOnFault());
    EXPECT_TRUE(hardware->getKestos().empty());
}

TEST_F(HardwareManagerPresenterTest, WindowOpensAgainAfterAConfirmationThatFailed)
{
    int failures = 0;
    auto handler = Glib::add_exception_handler([&] { ++failures; });
    presenter->signalHardwareChanging.connect(
        [](std::unique_ptr<HardwareManager>&) { throw std::runtime_error("no room"); });
    for (int attempt = 1; attempt <= 2; ++attempt) {
        open();
        click("OK");
        EXPECT_EQ(failures, attempt);
        EXPECT_FALSE(presenter->getView());
    }
    handler.disconnect();
}

TEST_F(HardwareManagerPresenterTest, CancelEscapeAndClosingChangeNothing)
{
    addHardware("10.1.0.1");
    const std::function<void()> ways[] = {
        [this] { click("Cancel"); },
        [this] { dynamic_cast<Gtk::Window*>(window)->close(); },
        [this] { KesTest::pressKey(dynamic_cast<Gtk::Window&>(*window), GDK_KEY_Escape); },
    };
    for (const auto& close : ways) {
        open();
        click("Remove 10.1.0.1");
        close();
        EXPECT_TRUE(waitFor([this] { return !presenter->getView(); }));
    }
    EXPECT_EQ(confirmations, 0);
    EXPECT_EQ(hardware->getKestos().size(), 1U);
}

TEST_F(HardwareManagerPresenterTest, RefusedAddressesAreExplainedInPlace)
{
    addHardware("10.1.0.1");
    open();
    for (const auto& [text, reason] :
         {std::pair("10.1.0", "is not a network address"), {"10.1.0.1", "is in the list already"}}) {
        add(text);
        EXPECT_TRUE(reads(reason));
        EXPECT_TRUE(addressEntry().get_style_context()->has_class("error"));
        addressEntry().set_text("10.");
        EXPECT_FALSE(reads(reason));
        EXPECT_FALSE(addressEntry().get_style_context()->has_class("error"));
    }
    // What is typed counts when OK is pressed: refused, or taken along.
    click("OK");
    EXPECT_TRUE(reads("Correct the marked values first."));
    EXPECT_TRUE(reads("is not a network address"));
    addressEntry().set_text("10.1.0.9");
    click("OK");
    ASSERT_EQ(confirmations, 1);
    EXPECT_EQ(confirmed->getKestos().size(), 2U);
}

TEST_F(HardwareManagerPresenterTest, SaysThatThereIsNoThreadForItsWork)
{
    open();
    const std::string refusal = "The computer is too busy for this.";
    {
        const KesTest::NoThreads noThreads;
        click("Search");
        EXPECT_TRUE(reads(refusal));
        add("10.1.0.1");
    }
    click("Search");
    EXPECT_TRUE(waitFor([this] { return reads("Found in the network:"); }));
    EXPECT_TRUE(reads(refusal)) << "beside the address";
    click("Identify 10.1.0.1");
    EXPECT_TRUE(waitFor([&] { return !reads(refusal); }));
}

TEST_F(HardwareManagerPresenterTest, IdentifiesWithoutHoldingUpTheWindow)
{
    device->setAnswerDelay(std::chrono::milliseconds(50));
    addHardware("10.0.7.1");
    addHardware("127.8.5.9");
    open();
    EXPECT_TRUE(reads("Not identified yet"));
    auto& identify = *named<Gtk::Button>("Identify 10.0.7.1");
    identify.grab_focus();
    click("Identify 10.0.7.1");
    EXPECT_TRUE(reads("Asking the device…"));
    EXPECT_FALSE(identify.is_sensitive());
    // The answer finds its device wherever it has been moved.
    click("Move 10.0.7.1 down");
    ASSERT_TRUE(waitFor([this] { return reads("KESTO-3 No. 00001, simulated"); }));
    click("Identify 127.8.5.9");
    ASSERT_TRUE(waitFor([this] { return reads("there is no device at this address"); }));
}

TEST_F(HardwareManagerPresenterTest, ADeviceInUseIsKnownFromTheConfiguration)
{
    addHardware("10.0.7.1");
    open();
    const auto isModal = [this] { return dynamic_cast<Gtk::Window*>(window)->get_modal(); };
    EXPECT_TRUE(isModal());
    ASSERT_TRUE(hardware->prepare());
    click("Identify 10.0.7.1");
    EXPECT_TRUE(reads("KESTO-3 No. 00001, simulated"));
    EXPECT_TRUE(hardware->getKestos().getItems()[0]->isConnected());
    ASSERT_TRUE(hardware->startWorkingMode());
    open();
    EXPECT_FALSE(isModal()) << "it stands between the operator and Stop";
}

TEST_F(HardwareManagerPresenterTest, DiesAndClosesSafelyWithQuestionsUnderWay)
{
    device->setAnswerDelay(std::chrono::milliseconds(50));
    addHardware("10.0.7.1");
    open();
    click("Identify 10.0.7.1");
    click("Search");
    click("Cancel");
    open();
    EXPECT_TRUE(reads("Not identified yet"));
    click("Identify 10.0.7.1");
    presenter.reset();
    KesTest::runPendingEvents();
}

TEST_F(HardwareManagerPresenterTest, TheFocusFollowsADeviceThatIsMovedOrRemoved)
{
    for (const char* text : {"10.1.0.1", "10.1.0.2", "10.1.0.3"})
        addHardware(text);
    open();
    const auto focused = [this] {
        return dynamic_cast<Gtk::Window*>(window)->get_focus()->get_accessible()->get_name();
    };
    click("Move 10.1.0.1 down");
    EXPECT_EQ(focused(), "Move 10.1.0.1 down");
    click("Move 10.1.0.1 down");
    EXPECT_EQ(focused(), "Move 10.1.0.1 up");
    click("Remove 10.1.0.1");
    EXPECT_EQ(focused(), "Remove 10.1.0.3");
}

TEST_F(HardwareManagerPresenterTest, ADeviceThatIsAddedIsSeenWithAllThatIsSaidOfIt)
{
    for (int i = 1; i <= 8; ++i)
        addHardware(("10.1.0." + std::to_string(i)).c_str());
    open();
    add("127.8.5.9");
    ASSERT_TRUE(waitFor([this] { return reads("there is no device at this address"); }));
    auto& list = dynamic_cast<Gtk::ScrolledWindow&>(*KesTest::findByClass(*content(), "kes-device-list"));
    const auto place = list.get_vadjustment();
    EXPECT_TRUE(waitFor([&] {
        const double end = place->get_upper() - place->get_page_size();
        return end > 0.0 && place->get_value() == end;
    }));
}

TEST_F(HardwareManagerPresenterTest, FollowsTheGlobalConfigurationWhenItIsReplacedMeanwhile)
{
    KesDevice::HardwareControl::setGlobalInstance(HardwareManager::create(), true);
    presenter->edit(nullptr, KesDevice::HardwareControl::getInstance(), false);

    auto other = HardwareManager::create();
    device.addTo(*other);
    ASSERT_TRUE(other->prepare());
    ASSERT_TRUE(other->startWorkingMode());
    KesDevice::HardwareControl::setGlobalInstance(std::move(other), true);
    click("OK");
    EXPECT_TRUE(reads("The devices are in use."));
    EXPECT_EQ(confirmations, 0);
    KesDevice::HardwareControl::setGlobalInstance(HardwareManager::create(), true);
    click("OK");
    EXPECT_EQ(confirmations, 1);
}

} // namespace
