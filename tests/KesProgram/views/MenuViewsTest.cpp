#include "ViewDoubles.h"

#include <KesProgram/views/FileRecentMenuView.h>

namespace {

using namespace KesTest;
using testing::ElementsAre;

class MenuViewsTest : public GuiTest {
protected:
    static std::vector<Gtk::MenuItem*> items(Gtk::MenuShell& menu)
    {
        return findWidgets<Gtk::MenuItem>(menu);
    }
    static std::vector<std::string> labels(Gtk::MenuShell& menu)
    {
        std::vector<std::string> result;
        for (auto* item : items(menu))
            result.push_back(item->get_label().raw());
        return result;
    }
};

TEST_F(MenuViewsTest, RecentFilesNewestOnTop)
{
    KesProgram::FileRecentMenuView view;
    std::string chosen;
    sigc::connection choice = view.signalFile.connect([&](const std::string& path) { chosen = path; });
    view.setFileCollection({"x"});
    view.setFileCollection({"a", "/tmp/b_c", "c"});
    EXPECT_THAT(labels(view), ElementsAre("c", "/tmp/b_c", "a"));
    items(view)[1]->activate();
    EXPECT_EQ(chosen, "/tmp/b_c");
    choice.disconnect();
    view.setFileCollection({});
    EXPECT_TRUE(items(view).empty());

    const std::string broken = "/tmp/\xff\xfe.kar";
    const std::string longPath = "/home/" + std::string(300, 'x') + "/test.kar";
    view.setFileCollection({longPath, broken, ""});
    auto* item = items(view)[2];
    int minimum = 0, natural = 0;
    item->get_preferred_width(minimum, natural);
    EXPECT_EQ(item->get_label(), longPath);
    EXPECT_EQ(item->get_tooltip_text(), longPath);
    EXPECT_LT(natural, 1000);
    // Opening a file makes it the newest one: the menu changes while its item is being activated.
    view.signalFile.connect([&](const std::string& path) {
        chosen = path;
        view.setFileCollection({chosen});
    });
    items(view)[1]->activate();
    EXPECT_EQ(chosen, broken);
    ASSERT_EQ(items(view).size(), 1u);
    EXPECT_TRUE(items(view)[0]->get_label().validate());
}

} // namespace
