#include "ViewDoubles.h"

#include <KesProgram/views/FileMenuView.h>
#include <KesProgram/views/FileRecentMenuView.h>
#include <KesProgram/views/HelpMenuView.h>
#include <KesProgram/views/ProgramMainMenuView.h>

namespace {

using namespace KesTest;
using testing::ElementsAre;
using testing::IsEmpty;

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
    template <typename... Signals>
    static std::vector<int> activateAll(Gtk::MenuShell& menu, Signals&... signals)
    {
        const auto emitted = recordEmissions(signals...);
        for (auto* item : items(menu))
            item->activate();
        return *emitted;
    }
};

TEST_F(MenuViewsTest, FileAndHelpMenu)
{
    lng::language = lng::Russian;
    KesProgram::FileMenuView file;
    auto& menu = *file.get_submenu();
    EXPECT_EQ(file.get_label(), "Файл");
    EXPECT_THAT(labels(menu), ElementsAre("Новый", "Открыть", "Сохранить", "Сохранить как..."));
    EXPECT_THAT(activateAll(menu, file.signalNew, file.signalOpen, file.signalSave, file.signalSaveAs),
                ElementsAre(0, 1, 2, 3));
    const auto sensitive = [&] {
        std::vector<bool> result;
        for (auto* item : items(menu))
            result.push_back(item->get_visible() && item->get_sensitive());
        return result;
    };
    file.setEnabledNew(false);
    EXPECT_THAT(sensitive(), ElementsAre(false, true, true, true));
    file.setEnabledOpen(false);
    file.setEnabledNew(true);
    EXPECT_THAT(sensitive(), ElementsAre(true, false, true, true));

    KesProgram::HelpMenuView help;
    EXPECT_EQ(help.get_label(), "Помощь");
    EXPECT_THAT(labels(*help.get_submenu()), ElementsAre("О программе", "Помощь"));
    EXPECT_THAT(activateAll(*help.get_submenu(), help.signalAbout, help.signalHelp), ElementsAre(0, 1));
}

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
    EXPECT_THAT(items(view), IsEmpty());

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

TEST_F(MenuViewsTest, MenuBarHoldsMenusAndToolbars)
{
    struct ToolbarView : Gtk::Toolbar, Kes::IView {
    } first, second;
    KesProgram::FileMenuView file;
    KesProgram::HelpMenuView help;
    NoWidgetView none;
    KesProgram::ProgramMainMenuView bar;
    // A toolbar is a widget, but nothing that a menu bar can hold.
    for (Kes::IView* view : std::initializer_list<Kes::IView*>{&file, nullptr, &none, &first, &help})
        bar.addMenu(view);
    for (Kes::IView* view : std::initializer_list<Kes::IView*>{nullptr, &none, &first, &second})
        bar.addToolbar(view);

    EXPECT_TRUE(bar.get_style_context()->has_class("menubar"));
    auto* menuBar = dynamic_cast<Gtk::MenuBar*>(bar.get_child_at(0, 0));
    auto* box = dynamic_cast<Gtk::Box*>(bar.get_child_at(1, 0));
    ASSERT_TRUE(menuBar && box);
    EXPECT_THAT(menuBar->get_children(), ElementsAre(&file, &help));
    const auto placed = box->get_children();
    ASSERT_EQ(placed.size(), 4u);
    EXPECT_EQ(placed[1], &first);
    EXPECT_EQ(placed[3], &second);
    for (auto* separator : {placed[0], placed[2]}) {
        EXPECT_TRUE(dynamic_cast<Gtk::SeparatorMenuItem*>(separator));
        EXPECT_TRUE(separator->get_style_context()->has_class("menuitem_separator"));
    }
    EXPECT_TRUE(box->get_hexpand() && box->get_vexpand() && menuBar->get_vexpand());
    EXPECT_FALSE(bar.compute_expand(Gtk::ORIENTATION_VERTICAL));
}

} // namespace
