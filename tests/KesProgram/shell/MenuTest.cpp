#include "ShellTest.h"

#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesProgram/shell/FileMenuPresenter.h>
#include <KesProgram/shell/FileToolbarPresenter.h>
#include <KesProgram/shell/HardwareControlToolbarPresenter.h>

namespace {

using namespace KesTest;

class MenuTest : public ShellTest {
protected:
    MenuTest()
    {
        model.extension = "abc";
        open();
    }

    static Gtk::MenuItem& item(Kes::IPresenter& presenter, std::size_t index)
    {
        auto& menu = *dynamic_cast<Gtk::MenuItem&>(*presenter.getView()).get_submenu();
        return dynamic_cast<Gtk::MenuItem&>(*menu.get_children().at(index));
    }

    static Gtk::ToolButton& button(Kes::IPresenter& presenter, int index)
    {
        return dynamic_cast<Gtk::ToolButton&>(
            *dynamic_cast<Gtk::Toolbar&>(*presenter.getView()).get_nth_item(index));
    }

    /// A user's click on a tool button.
    static void click(Gtk::ToolButton& button)
    {
        gtk_button_clicked(GTK_BUTTON(gtk_bin_get_child(GTK_BIN(button.gobj()))));
    }
};

TEST_F(MenuTest, NewAndOpenAreOffWhileTheHardwareRuns)
{
    KesProgram::FileMenuPresenter menu(&shell);
    KesProgram::FileToolbarPresenter toolbar(&shell);
    const auto sensitive = [&] {
        std::vector<bool> result;
        for (std::size_t i = 0; i < 4; ++i)
            result.push_back(item(menu, i).get_sensitive());
        for (int i = 0; i < 3; ++i)
            result.push_back(button(toolbar, i).get_sensitive());
        return result;
    };
    const std::vector<bool> idle(7, true);
    const std::vector<bool> running{false, false, true, true, false, false, true};
    auto& signal = KesDevice::HardwareIsRunningComponent::getInstance().signalRunningChanged;
    onAnotherThread([&] { signal.emit(true); });
    EXPECT_EQ(sensitive(), idle) << "a widget was touched on another thread";
    EXPECT_TRUE(waitFor([&] { return sensitive() == running; }));
    // The last report counts, also when an older one from another thread is still queued.
    onAnotherThread([&] { signal.emit(true); });
    signal.emit(false);
    EXPECT_EQ(sensitive(), idle);
    runPendingEvents();
    EXPECT_EQ(sensitive(), idle);
}

TEST_F(MenuTest, StartAndStopFollowTheModel)
{
    KesProgram::HardwareControlToolbarPresenter toolbar(model);
    auto& start = button(toolbar, 0);
    auto& stop = button(toolbar, 1);
    model._setCanProgramStart(true);
    for (const int stopping : {1, 2}) { // Stop, and Power off, which stops as well
        click(start);
        EXPECT_FALSE(start.get_sensitive());
        EXPECT_TRUE(waitFor([&] { return stop.get_sensitive() && model.isOutputStarted(); }));
        click(button(toolbar, stopping));
        EXPECT_FALSE(stop.get_sensitive() || model.isRunning());
        EXPECT_TRUE(waitFor([&] { return start.get_sensitive(); }));
    }
    // What another thread has said before must not overtake what the GUI thread says now.
    onAnotherThread([&] { model._setCanProgramStart(true); });
    model._setCanProgramStart(false);
    runPendingEvents();
    EXPECT_FALSE(start.get_sensitive());
}

TEST_F(MenuTest, PowerOffNeedsPermissionAndNoUpdate)
{
    auto& updater = KesDevice::KestoStateGlobalUpdater::getInstance();
    KesProgram::HardwareControlToolbarPresenter toolbar(model);
    auto& powerOff = button(toolbar, 2);
    EXPECT_TRUE(powerOff.get_visible());
    toolbar.setCanPowerOff(false);
    EXPECT_FALSE(powerOff.get_visible());
    updater.setUpdating(true);
    updater.setUpdating(false);
    EXPECT_FALSE(powerOff.get_visible()) << "shown without permission";
    updater.setUpdating(true);
    toolbar.setCanPowerOff(true);
    EXPECT_FALSE(powerOff.get_visible()) << "shown during updates";
    onAnotherThread([&] { updater.setUpdating(false); });
    EXPECT_TRUE(waitFor([&] { return powerOff.get_visible(); }));
    updater.setUpdating(true);
    EXPECT_FALSE(powerOff.get_visible()) << "shown when updates begin";
    updater.setUpdating(false);
}

/// Presenters of one program may die before its signals fall silent.
TEST_F(MenuTest, PresentersMayDieWithUpdatesQueued)
{
    auto menu = std::make_unique<KesProgram::FileMenuPresenter>(&shell);
    auto toolbar = std::make_unique<KesProgram::HardwareControlToolbarPresenter>(model);
    onAnotherThread([this] {
        KesDevice::HardwareIsRunningComponent::getInstance().signalRunningChanged.emit(true);
        KesDevice::KestoStateGlobalUpdater::getInstance().signalUpdatingChanged.emit(false);
        model._setCanProgramStart(true);
    });
    menu.reset();
    toolbar.reset();
    runPendingEvents();
    model._setCanProgramStart(false);
}

} // namespace
