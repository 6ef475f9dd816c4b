#include "support/GuiTest.h"

#include <KesCommonView/AccessibleActions.h>

#include <atk/atk.h>

namespace {

using KesTest::runPendingEvents;

bool perform(Gtk::Widget& widget)
{
    return atk_action_do_action(ATK_ACTION(gtk_widget_get_accessible(widget.gobj())), 0);
}

struct AccessibleActionsTest : KesTest::GuiTest {
    AccessibleActionsTest() { Kes::AccessibleActions::comeFromMainLoop(); }
};

TEST_F(AccessibleActionsTest, aButtonIsClickedFromTheMainLoop)
{
    Gtk::Window window;
    auto button = std::make_unique<Gtk::Button>("Save");
    int clicks = 0;
    button->signal_clicked().connect([&] { ++clicks; });
    window.add(*button);
    window.show_all();
    EXPECT_TRUE(perform(*button));
    EXPECT_EQ(clicks, 0);
    runPendingEvents();
    EXPECT_EQ(clicks, 1);

    EXPECT_TRUE(perform(*button));
    button->set_sensitive(false);
    EXPECT_FALSE(perform(*button));
    runPendingEvents();
    button->set_sensitive(true);
    EXPECT_TRUE(perform(*button));
    button.reset();
    runPendingEvents();
    EXPECT_EQ(clicks, 1) << "insensitive or gone meanwhile";
}

} // namespace
