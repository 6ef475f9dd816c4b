#include "support/GuiTest.h"
#include "support/LiveWidgets.h"
#include "support/TemporaryHome.h"

#include <KesCommon/DesktopOpener.h>
#include <KesCommonView/AccessibleActions.h>
#include <KesCommonView/GtkWidgetHelper.h>
#include <KesCommonView/HelpView.h>

namespace {

class WidgetsTest : public KesTest::GuiTest {};

TEST_F(WidgetsTest, helpOpensTheFileOrTellsThatItCannot)
{
    KesTest::TemporaryHome home;
    KesTest::writeFile(home.getPath() / "Help.pdf", "%PDF");
    std::vector<std::string> opened;
    auto previous = Kes::DesktopOpener::replace([&](const std::string& path) -> Kes::Result {
        opened.push_back(path);
        return true;
    });
    KesTest::LabelView parent("parent");
    Kes::HelpView help;
    help.show(&parent, home.file("Help.pdf"));
    EXPECT_THAT(opened, testing::ElementsAre(home.file("Help.pdf")));
    dialogs.answer(Kes::DialogResult::Ok);
    help.show(&parent, home.file("None.pdf"));
    Kes::DesktopOpener::replace(std::move(previous));
    ASSERT_EQ(dialogs.getMessages().size(), 1u);
    EXPECT_EQ(dialogs.getMessages()[0].text, "Error opening help file:\n " + home.file("None.pdf"));
    EXPECT_EQ(dialogs.getMessages()[0].parent, &parent);
    EXPECT_EQ(opened.size(), 1u);
}

TEST_F(WidgetsTest, whatHasTheFocusOfAComboBoxTellsItsNameAndChoice)
{
    Gtk::Window window;
    Gtk::ComboBoxText combo;
    combo.append("GPS");
    Kes::GtkWidgetHelper::setAccessibleName(combo, "Mode");
    window.add(combo);
    window.show_all();
    const auto focusable = KesTest::findWidgets(combo, [](auto& widget) { return widget.get_can_focus(); });
    const auto name = [&] { return focusable.back()->get_accessible()->get_name(); };
    EXPECT_EQ(name(), "Mode");
    combo.set_active(0);
    EXPECT_EQ(name(), "Mode: GPS");
}

TEST_F(WidgetsTest, anEmptiedContainerFreesWhatIsManagedAndNothingElse)
{
    KesTest::LiveWidgets live;
    Gtk::Window window;
    Gtk::Grid grid;
    Gtk::Label own("own");
    window.add(grid);
    window.show_all();
    const int before = live.getCount();
    grid.add(own);
    auto* row = Gtk::make_managed<Gtk::Box>();
    row->add(*Gtk::make_managed<Gtk::Label>("managed"));
    grid.add(*row);
    EXPECT_EQ(live.getCount(), before + 3);
    Kes::GtkWidgetHelper::removeChildren(grid);
    EXPECT_EQ(live.getCount(), before + 1);
    EXPECT_EQ(own.get_parent(), nullptr);
    EXPECT_EQ(own.get_text(), "own");
    EXPECT_TRUE(grid.get_children().empty());
}

TEST_F(WidgetsTest, aButtonThatEmptiesItsOwnContainerLivesUntilItsHandlersHaveEnded)
{
    KesTest::LiveWidgets live;
    Gtk::Window window;
    Gtk::Box box;
    window.add(box);
    window.show_all();
    const int before = live.getCount();
    auto* button = Gtk::make_managed<Gtk::Button>();
    box.add(*button);
    std::string seen;
    button->signal_clicked().connect([&, text = std::string("the handler's own")] {
        Kes::GtkWidgetHelper::removeChildren(box);
        KesTest::runPendingEvents();
        EXPECT_GT(live.getCount(), before);
        seen = text;
    });
    button->signal_clicked().connect([&] { seen += ", and the next one"; });
    button->clicked();
    EXPECT_EQ(seen, "the handler's own, and the next one");
    EXPECT_EQ(live.getCount(), before);
}

TEST_F(WidgetsTest, aButtonIsClickedFromTheMainLoop)
{
    Kes::AccessibleActions::comeFromMainLoop();
    const auto perform = [](Gtk::Widget& widget) {
        return atk_action_do_action(ATK_ACTION(gtk_widget_get_accessible(widget.gobj())), 0);
    };
    Gtk::Window window;
    auto button = std::make_unique<Gtk::Button>("Save");
    int clicks = 0;
    button->signal_clicked().connect([&] { ++clicks; });
    window.add(*button);
    window.show_all();
    EXPECT_TRUE(perform(*button));
    EXPECT_EQ(clicks, 0);
    KesTest::runPendingEvents();
    EXPECT_EQ(clicks, 1);

    EXPECT_TRUE(perform(*button));
    button->set_sensitive(false);
    EXPECT_FALSE(perform(*button));
    KesTest::runPendingEvents();
    button->set_sensitive(true);
    EXPECT_TRUE(perform(*button));
    button.reset();
    KesTest::runPendingEvents();
    EXPECT_EQ(clicks, 1) << "insensitive or gone meanwhile";
}

} // namespace
