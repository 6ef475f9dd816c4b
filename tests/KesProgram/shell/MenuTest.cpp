#include "ShellTest.h"

#include <KesDevice/HardwareIsRunningComponent.h>
#include <KesDevice/KestoStateGlobalUpdater.h>
#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/archive/FileRecentManager.h>
#include <KesProgram/shell/FileMenuPresenter.h>
#include <KesProgram/shell/FileRecentMenuPresenter.h>
#include <KesProgram/shell/FileToolbarPresenter.h>
#include <KesProgram/shell/HardwareControlToolbarPresenter.h>
#include <KesProgram/shell/HardwareSettingsToolbarPresenter.h>
#include <KesProgram/shell/ProgramMainMenuPresenter.h>
#include <KesProgram/shell/ToolsToolbarPresenter.h>

#include <gmock/gmock.h>
#include <gtkmm/menu.h>
#include <gtkmm/menuitem.h>
#include <gtkmm/toolbutton.h>

#include <thread>

namespace KesTest {

namespace {

using Kes::DialogResult;
using testing::ElementsAre;

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

    static Gtk::ToolButton& button(Kes::IPresenter& presenter, std::size_t index)
    {
        auto& toolbar = dynamic_cast<Gtk::Toolbar&>(*presenter.getView());
        return dynamic_cast<Gtk::ToolButton&>(*toolbar.get_nth_item(static_cast<int>(index)));
    }

    /// A user's click on a tool button.
    static void click(Gtk::ToolButton& button)
    {
        gtk_button_clicked(GTK_BUTTON(gtk_bin_get_child(GTK_BIN(button.gobj()))));
    }

    static std::vector<std::string> labels(Kes::IPresenter& presenter)
    {
        std::vector<std::string> texts;
        for (auto* child : dynamic_cast<Gtk::Menu&>(*presenter.getView()).get_children())
            texts.push_back(dynamic_cast<Gtk::MenuItem&>(*child).get_label());
        return texts;
    }

    static void onAnotherThread(const std::function<void()>& function) { std::thread(function).join(); }
};

TEST_F(MenuTest, NewAndOpenAreOffWhileTheHardwareRuns)
{
    KesProgram::FileMenuPresenter menu(&shell);
    KesProgram::FileToolbarPresenter toolbar(&shell);
    const auto sensitive = [&] {
        std::vector<bool> result;
        for (std::size_t i = 0; i < 4; ++i)
            result.push_back(item(menu, i).get_sensitive());
        for (std::size_t i = 0; i < 3; ++i)
            result.push_back(button(toolbar, i).get_sensitive());
        return result;
    };
    const std::vector<bool> idle(7, true);
    const std::vector<bool> running{false, false, true, true, false, false, true};
    auto& signal = KesDevice::HardwareIsRunningComponent::getInstance().signalRunningChanged;
    EXPECT_EQ(sensitive(), idle);
    signal.emit(true);
    EXPECT_EQ(sensitive(), running);
    signal.emit(false);
    EXPECT_EQ(sensitive(), idle);
    onAnotherThread([&] { signal.emit(true); });
    EXPECT_EQ(sensitive(), idle) << "a widget was touched on another thread";
    EXPECT_TRUE(waitFor([&] { return sensitive() == running; }));
    // The last report counts, also when an older one from another thread is still queued.
    onAnotherThread([&] { signal.emit(true); });
    signal.emit(false);
    runPendingEvents();
    EXPECT_EQ(sensitive(), idle);
}

TEST_F(MenuTest, FileMenuSavesUnderTheNameItHas)
{
    const std::string file = home.file("a.abc");
    ASSERT_TRUE(model.getArchiveManager()->saveAs(file));
    model.data = "changed";
    KesProgram::FileMenuPresenter menu(&shell);
    item(menu, 2).activate();
    EXPECT_EQ(readFile(file), "changed");
    EXPECT_TRUE(dialogs.getFiles().empty());

    dialogs.answerFile(home.file("b.abc"));
    item(menu, 3).activate();
    EXPECT_EQ(readFile(home.file("b.abc")), "changed");

    item(menu, 0).activate();
    EXPECT_TRUE(model.getArchiveManager()->isNew());
    dialogs.answer(DialogResult::No);
    dialogs.answerFile(file);
    item(menu, 1).activate();
    EXPECT_EQ(model.getArchiveManager()->getFileName(), file);
    EXPECT_FALSE(dialogs.getFiles().back().save);
}

TEST_F(MenuTest, SaveButtonAlwaysAsksForAName)
{
    ASSERT_TRUE(model.getArchiveManager()->saveAs(home.file("a.abc")));
    KesProgram::FileToolbarPresenter toolbar(&shell);
    dialogs.answerFile(home.file("b.abc"));
    click(button(toolbar, 2));
    ASSERT_EQ(dialogs.getFiles().size(), 1U);
    EXPECT_TRUE(dialogs.getFiles()[0].save);
    click(button(toolbar, 0));
    EXPECT_TRUE(model.getArchiveManager()->isNew());
    dialogs.answer(DialogResult::Cancel);
    click(button(toolbar, 1));
}

TEST_F(MenuTest, RecentFilesNewestOnTopOpenWithTheirQuestions)
{
    const std::string a = home.file("a.abc");
    const std::string b = home.file("_b \xd1\x84.abc");
    ASSERT_TRUE(model.getArchiveManager()->saveAs(a));
    KesProgram::FileRecentMenuPresenter menu(&shell);
    EXPECT_THAT(labels(menu), ElementsAre(a));
    ASSERT_TRUE(model.getArchiveManager()->saveAs(b));
    EXPECT_THAT(labels(menu), ElementsAre(b, a));
    model.data = "changed";
    auto* last = dynamic_cast<Gtk::Menu&>(*menu.getView()).get_children().back();
    dialogs.answer(DialogResult::No);
    dynamic_cast<Gtk::MenuItem&>(*last).activate();
    EXPECT_EQ(model.getArchiveManager()->getFileName(), a);
    EXPECT_THAT(labels(menu), ElementsAre(a, b));
}

TEST_F(MenuTest, StartAndStopFollowTheModel)
{
    KesProgram::HardwareControlToolbarPresenter toolbar(model);
    auto& start = button(toolbar, 0);
    auto& stop = button(toolbar, 1);
    EXPECT_FALSE(start.get_sensitive());
    EXPECT_FALSE(stop.get_sensitive());
    model._setCanProgramStart(true);
    EXPECT_TRUE(start.get_sensitive());
    click(start);
    EXPECT_FALSE(start.get_sensitive());
    EXPECT_TRUE(waitFor([&] { return stop.get_sensitive(); }));
    click(stop);
    EXPECT_FALSE(stop.get_sensitive());
    EXPECT_TRUE(waitFor([&] { return start.get_sensitive(); }));

    // What another thread has said before must not overtake what the GUI thread says now.
    onAnotherThread([&] {
        model._setCanProgramStart(false);
        model._setCanProgramStart(true);
    });
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
    // The permission it already has does not touch the view.
    powerOff.hide();
    toolbar.setCanPowerOff(true);
    EXPECT_FALSE(powerOff.get_visible());
}

TEST_F(MenuTest, PowerOffDuringARunStopsIt)
{
    KesProgram::HardwareControlToolbarPresenter toolbar(model);
    model.startRun();
    click(button(toolbar, 2));
    EXPECT_TRUE(record.has("model stop"));
    EXPECT_FALSE(model.isRunning());
}

TEST_F(MenuTest, TestObjectCommandIsThereOnlyWhenAskedFor)
{
    KesProgram::ToolsToolbarPresenter without(&shell, false);
    KesProgram::ToolsToolbarPresenter with(&shell, true);
    EXPECT_EQ(dynamic_cast<Gtk::Toolbar&>(*without.getView()).get_n_items(), 1);
    EXPECT_EQ(dynamic_cast<Gtk::Toolbar&>(*with.getView()).get_n_items(), 2);
    dialogs.answer(DialogResult::Ok);
    click(button(without, 0));
    EXPECT_THAT(dialogs.getTexts(), ElementsAre("Error creating file."));
}

/// Presenters of one program may die before its signals fall silent.
TEST_F(MenuTest, PresentersMayDieWithUpdatesQueued)
{
    auto& running = KesDevice::HardwareIsRunningComponent::getInstance().signalRunningChanged;
    auto& updating = KesDevice::KestoStateGlobalUpdater::getInstance().signalUpdatingChanged;
    for (int round = 0; round < 20; ++round) {
        auto menu = std::make_unique<KesProgram::FileMenuPresenter>(&shell);
        auto toolbar = std::make_unique<KesProgram::HardwareControlToolbarPresenter>(model);
        std::atomic<bool> isOver{false};
        std::thread device([&] {
            while (!isOver) {
                running.emit(true);
                updating.emit(false);
                model._setCanProgramStart(true);
                model._setCanProgramStart(false);
                running.emit(false);
            }
        });
        turnMainLoop(20);
        menu.reset();
        toolbar.reset();
        isOver = true;
        device.join();
    }
}

} // namespace

} // namespace KesTest
