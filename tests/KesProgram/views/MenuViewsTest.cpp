#include "ViewDoubles.h"

#include <KesCommon/Language.h>
#include <KesProgram/views/FileMenuView.h>
#include <KesProgram/views/FileRecentMenuView.h>
#include <KesProgram/views/HelpMenuView.h>
#include <KesProgram/views/ProgramMainMenuView.h>
#include <support/GuiTest.h>

#include <gmock/gmock.h>
#include <gtkmm/separatormenuitem.h>
#include <gtkmm/toolbar.h>

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

TEST_F(MenuViewsTest, FileMenu)
{
    lng::language = lng::Russian;
    KesProgram::FileMenuView view;
    EXPECT_EQ(view.get_label(), "Файл");
    EXPECT_THAT(labels(*view.get_submenu()),
                ElementsAre("Новый", "Открыть", "Сохранить", "Сохранить как..."));
    EXPECT_THAT(
        activateAll(*view.get_submenu(), view.signalNew, view.signalOpen, view.signalSave, view.signalSaveAs),
        ElementsAre(0, 1, 2, 3));
    const auto sensitive = [&] {
        std::vector<bool> result;
        for (auto* item : items(*view.get_submenu()))
            result.push_back(item->get_visible() && item->get_sensitive());
        return result;
    };
    view.setEnabledNew(false);
    EXPECT_THAT(sensitive(), ElementsAre(false, true, true, true));
    view.setEnabledOpen(false);
    view.setEnabledNew(true);
    EXPECT_THAT(sensitive(), ElementsAre(true, false, true, true));
}

TEST_F(MenuViewsTest, HelpMenu)
{
    lng::language = lng::Russian;
    KesProgram::HelpMenuView view;
    EXPECT_EQ(view.get_label(), "Помощь");
    EXPECT_THAT(labels(*view.get_submenu()), ElementsAre("О программе", "Помощь"));
    EXPECT_THAT(activateAll(*view.get_submenu(), view.signalAbout, view.signalHelp), ElementsAre(0, 1));
}

TEST_F(MenuViewsTest, RecentFilesNewestOnTop)
{
    KesProgram::FileRecentMenuView view;
    std::vector<std::string> chosen;
    view.signalFile.connect([&](const std::string& path) { chosen.push_back(path); });
    view.setFileCollection({"x"});
    view.setFileCollection({"a", "/tmp/b_c", "c"});
    EXPECT_THAT(labels(view), ElementsAre("c", "/tmp/b_c", "a"));
    items(view)[1]->activate();
    EXPECT_THAT(chosen, ElementsAre("/tmp/b_c"));
    view.setFileCollection({});
    EXPECT_THAT(items(view), IsEmpty());
}

TEST_F(MenuViewsTest, RecentFilesOfEveryName)
{
    KesProgram::FileRecentMenuView view;
    const std::string broken = "/tmp/\xff\xfe.kar";
    const std::string longPath = "/home/" + std::string(300, 'x') + "/test.kar";
    view.setFileCollection({longPath, broken, ""});
    // Opening a file makes it the newest one: the menu changes while its item is being activated.
    std::string chosen;
    view.signalFile.connect([&](const std::string& path) {
        chosen = path;
        view.setFileCollection({chosen});
    });

    auto* item = items(view)[2];
    auto* label = dynamic_cast<Gtk::Label*>(item->get_child());
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(item->get_label(), longPath);
    EXPECT_EQ(label->get_ellipsize(), Pango::ELLIPSIZE_MIDDLE);
    EXPECT_EQ(item->get_tooltip_text(), longPath);
    int minimum = 0, natural = 0;
    label->get_preferred_width(minimum, natural);
    EXPECT_LT(natural, 1000);

    items(view)[1]->activate();
    EXPECT_EQ(chosen, broken);
    EXPECT_EQ(items(view).size(), 1u);
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
    bar.addMenu(&file);
    bar.addMenu(nullptr);
    bar.addMenu(&none);
    bar.addMenu(&first); // a widget, but nothing that a menu bar can hold
    bar.addMenu(&help);
    bar.addToolbar(nullptr);
    bar.addToolbar(&none);
    bar.addToolbar(&first);
    bar.addToolbar(&second);

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
    EXPECT_EQ(box->get_spacing(), 0);
    EXPECT_TRUE(box->get_hexpand() && box->get_vexpand() && menuBar->get_vexpand());
    EXPECT_FALSE(bar.compute_expand(Gtk::ORIENTATION_VERTICAL));
}

} // namespace
