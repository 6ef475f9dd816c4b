#include "support/GuiTest.h"

#include <KesCommon/Language.h>
#include <KesDevice/HardwareManager.h>
#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesDevice/view/KestoStateUpdaterSwitchPresenter.h>
#include <KesDevice/view/SyncModeInfoWindowPresenter.h>

#include <atkmm/object.h>
#include <gtkmm/checkbutton.h>

#include <thread>

namespace {

using KesTest::waitFor;

class SmallPresentersTest : public KesTest::GuiTest {
protected:
    ~SmallPresentersTest() override { updater.setUpdating(false); }

    KesDevice::KestoStateGlobalUpdater& updater = KesDevice::KestoStateGlobalUpdater::getInstance();
};

TEST_F(SmallPresentersTest, TheSwitchTurnsUpdatesOnAndOff)
{
    KesDevice::KestoStateUpdaterSwitchPresenter presenter;
    auto& check = dynamic_cast<Gtk::CheckButton&>(*presenter.getView());
    EXPECT_FALSE(check.get_active());
    EXPECT_EQ(check.get_accessible()->get_name(), "State");
    check.clicked();
    EXPECT_TRUE(waitFor([this] { return updater.isUpdating(); }));
    // Faster than they can be carried out: the last wish counts.
    for (int i = 0; i < 5; ++i)
        check.clicked();
    EXPECT_TRUE(waitFor([this] { return !updater.isUpdating(); }));
    EXPECT_FALSE(check.get_active());
    KesTest::runPendingEvents();
    EXPECT_FALSE(updater.isUpdating());
}

TEST_F(SmallPresentersTest, TheSwitchFollowsOtherThreadsAndDiesInPeace)
{
    auto presenter = std::make_unique<KesDevice::KestoStateUpdaterSwitchPresenter>();
    auto& check = dynamic_cast<Gtk::CheckButton&>(*presenter->getView());
    std::thread([this] { updater.setUpdating(true); }).join();
    EXPECT_FALSE(check.get_active());
    EXPECT_TRUE(waitFor([&] { return check.get_active(); }));
    updater.setUpdating(false);
    EXPECT_FALSE(check.get_active());
    std::thread([this] { updater.setUpdating(true); }).join();
    presenter.reset();
    KesTest::runPendingEvents();
    EXPECT_TRUE(KesDevice::KestoStateUpdaterSwitchPresenter().getView());
}

TEST_F(SmallPresentersTest, EveryModeWithInformationShowsItUnderItsName)
{
    const auto hardware = KesDevice::HardwareManager::create();
    KesDevice::SyncModeInfoWindowPresenter presenter;
    EXPECT_FALSE(KesDevice::SyncModeInfoWindowPresenter::hasInfo(nullptr));
    presenter.show(nullptr);
    for (int kind = 0; kind < KesDevice::SyncModeCount; ++kind)
        for (const auto language : {lng::English, lng::Russian}) {
            lng::language = language;
            hardware->getSyncManager().setActiveMode(static_cast<KesDevice::SyncModeKind>(kind));
            const auto& mode = hardware->getSyncManager().getActiveMode();
            const bool expected = kind != 0;
            EXPECT_EQ(KesDevice::SyncModeInfoWindowPresenter::hasInfo(hardware.get()), expected);
            dialogs.clear();
            if (expected)
                dialogs.answer(Kes::DialogResult::Ok);
            presenter.show(hardware.get());
            ASSERT_EQ(dialogs.getMessages().size(), expected ? 1U : 0U);
            if (expected) {
                EXPECT_EQ(dialogs.getMessages()[0].text, mode.getInfo());
                EXPECT_EQ(dialogs.getMessages()[0].title, mode.getName());
            }
        }
}

} // namespace
