#include "support/GuiTest.h"
#include "support/LiveWidgets.h"

#include <KesProgram/views/FileRecentMenuView.h>

namespace {

using namespace KesTest;

class MenuViewsTest : public GuiTest {};

TEST_F(MenuViewsTest, RecentFilesOfAnyNameAreListedAndMayChangeWhileOneIsChosen)
{
    KesProgram::FileRecentMenuView view;
    const auto items = [&] { return findWidgets<Gtk::MenuItem>(view); };
    const std::string broken = "/tmp/\xff\xfe.kar";
    const std::string longPath = "/home/" + std::string(300, 'x') + "/test.kar";
    view.setFileCollection({"replaced"});
    view.setFileCollection({longPath, broken, "/tmp/b_c"});
    ASSERT_EQ(items().size(), 3u);
    EXPECT_EQ(items()[0]->get_label(), "/tmp/b_c") << "newest on top, and no mnemonic";
    int minimum = 0, natural = 0;
    items()[2]->get_preferred_width(minimum, natural);
    EXPECT_EQ(items()[2]->get_label(), longPath);
    EXPECT_EQ(items()[2]->get_tooltip_text(), longPath);
    EXPECT_LT(natural, 1000);
    // Opening a file makes it the newest one: the menu changes while its item is being activated.
    std::string chosen;
    view.signalFile.connect([&](const std::string& path) {
        chosen = path;
        view.setFileCollection({chosen});
    });
    items()[1]->activate();
    EXPECT_EQ(chosen, broken);
    ASSERT_EQ(items().size(), 1u);
    EXPECT_TRUE(items()[0]->get_label().validate());
}

TEST_F(MenuViewsTest, RecentFilesThatHaveLeftTheMenuAreFreed)
{
    LiveWidgets live;
    KesProgram::FileRecentMenuView view;
    view.setFileCollection({"/tmp/a", "/tmp/b"});
    const int filled = live.getCount();
    view.signalFile.connect([&](const std::string& path) { view.setFileCollection({"/tmp/a", path}); });
    for (int round = 0; round < 3; ++round)
        findWidgets<Gtk::MenuItem>(view).front()->activate();
    EXPECT_EQ(live.getCount(), filled);
    view.setFileCollection({});
    EXPECT_LT(live.getCount(), filled);
}

TEST_F(MenuViewsTest, RecentFilesAreFreedInWhicheverOrderTheMenuAndItsItemDie)
{
    for (const bool itemFirst : {true, false}) {
        const auto windows = countWindows();
        LiveWidgets live;
        auto view = std::make_unique<KesProgram::FileRecentMenuView>();
        auto item = std::make_unique<Gtk::MenuItem>("Recent files");
        item->set_submenu(*view);
        view->setFileCollection({"/tmp/a", "/tmp/b"});
        itemFirst ? item.reset() : view.reset();
        item.reset();
        view.reset();
        runPendingEvents();
        EXPECT_EQ(live.getCount(), 0) << (itemFirst ? "item first" : "menu first");
        EXPECT_EQ(countWindows(), windows) << (itemFirst ? "item first" : "menu first");
    }
}

} // namespace
