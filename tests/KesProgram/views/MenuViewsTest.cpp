#include "support/GuiTest.h"
#include "support/LiveWidgets.h"

#include <KesProgram/views/FileRecentMenuView.h>

namespace {

using namespace KesTest;

class MenuViewsTest : public GuiTest {};

TEST_F(MenuViewsTest, RecentFilesOfAnyNameAreListedAndMayChangeWhileOneIsChosen)
{
    LiveWidgets live;
    KesProgram::FileRecentMenuView view;
    const auto items = [&] { return findWidgets<Gtk::MenuItem>(view); };
    const std::string broken = "/tmp/\xff\xfe.kar";
    const std::string longPath = "/home/" + std::string(300, 'x') + "/test.kar";
    view.setFileCollection({"replaced"});
    const int withOneItem = live.getCount();
    view.setFileCollection({longPath, broken, "/tmp/b_c"});
    ASSERT_EQ(items().size(), 3u);
    EXPECT_EQ(items()[0]->get_label(), "/tmp/b_c") << "newest on top, and no mnemonic";
    EXPECT_EQ(items()[2]->get_label(), longPath);
    EXPECT_EQ(items()[2]->get_tooltip_text(), longPath);
    EXPECT_LT(widthOf(*items()[2]), 1000);
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
    EXPECT_EQ(live.getCount(), withOneItem) << "what has left the menu is freed";
}

TEST_F(MenuViewsTest, RecentFilesThatWouldLookAlikeStayWhole)
{
    const auto path = [](const char* middle) {
        return "/home/engineer/substations/" + std::string(80, 'x') + middle + std::string(80, 'y') +
               "/feeder.kar";
    };
    KesProgram::FileRecentMenuView view;
    view.setFileCollection({path("1"), path("2"), "/media/" + path("3")});
    for (auto* item : findWidgets<Gtk::MenuItem>(view)) {
        auto& label = dynamic_cast<Gtk::Label&>(*item->get_child());
        const bool isAlone = item->get_label().raw().find("/media") == 0;
        EXPECT_EQ(label.get_ellipsize() != Pango::ELLIPSIZE_NONE, isAlone);
        EXPECT_LT(widthOf(label), 1000);
        int least = 0, height = 0, line = 0;
        label.create_pango_layout("x")->get_pixel_size(least, line);
        label.get_preferred_height_for_width(widthOf(label), least, height);
        EXPECT_EQ(height > 2 * line, !isAlone) << "lines of " << item->get_label();
    }
}

} // namespace
