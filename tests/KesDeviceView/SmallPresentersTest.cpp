#include "support/GuiTest.h"
#include "support/NoThreads.h"

#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesDevice/view/KestoStateUpdaterSwitchPresenter.h>

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
    // Faster than they can be carried out: the last wish counts.
    std::atomic<int> changes{0};
    const Kes::ScopedConnection counting = updater.signalUpdatingChanged.connect([&](bool) { ++changes; });
    for (int i = 0; i < 2; ++i)
        check.clicked();
    EXPECT_TRUE(waitFor([&] { return changes == 2; })) << "on, and off again";
    check.clicked();
    EXPECT_TRUE(waitFor([this] { return updater.isUpdating(); }));
    for (int i = 0; i < 5; ++i)
        check.clicked();
    EXPECT_TRUE(waitFor([this] { return !updater.isUpdating(); }));
    EXPECT_FALSE(check.get_active());
    KesTest::runPendingEvents();
    EXPECT_FALSE(updater.isUpdating());
}

TEST_F(SmallPresentersTest, TheSwitchStaysAliveWhenThereIsNoThreadForItsWork)
{
    KesDevice::KestoStateUpdaterSwitchPresenter presenter;
    auto& check = dynamic_cast<Gtk::CheckButton&>(*presenter.getView());
    {
        const KesTest::NoThreads noThreads;
        check.clicked();
        EXPECT_FALSE(check.get_active());
    }
    check.clicked();
    EXPECT_TRUE(waitFor([this] { return updater.isUpdating(); }));
    EXPECT_TRUE(check.get_active());
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
}

} // namespace
