#include "ViewDoubles.h"

#include <KesProgram/views/HardwareControlToolbarView.h>

namespace {

using namespace KesTest;
using testing::ElementsAre;

std::vector<Gtk::ToolButton*> buttons(Gtk::Toolbar& toolbar)
{
    std::vector<Gtk::ToolButton*> result;
    for (int i = 0; i < toolbar.get_n_items(); ++i)
        if (auto* button = dynamic_cast<Gtk::ToolButton*>(toolbar.get_nth_item(i)))
            result.push_back(button);
    return result;
}

/// What a user makes out of each button: the picture, the tooltip, and the name that is read out.
std::vector<std::string> shown(Gtk::Toolbar& toolbar)
{
    std::vector<std::string> result;
    for (auto* button : buttons(toolbar)) {
        const auto images = button->get_icon_widget()->get_style_context()->list_classes();
        const auto name = button->get_child()->get_accessible()->get_name();
        result.push_back(images.at(0) + "|" + button->get_child()->get_tooltip_text() + "|" + name);
    }
    return result;
}

class ToolbarViewsTest : public GuiTest {
protected:
    /// Places the toolbar in a window, so that visibility is what a user sees.
    void place(Gtk::Toolbar& toolbar)
    {
        window.add(toolbar);
        window.show_all();
    }

    Gtk::Window window;
};

TEST_F(ToolbarViewsTest, ControlsATest)
{
    lng::language = lng::Russian;
    KesProgram::HardwareControlToolbarView view;
    place(view);
    EXPECT_THAT(shown(view),
                ElementsAre("ToolStartImage|Старт\nЗапустить проверку или выдачу на КЕСТО|Старт",
                            "ToolStopImage|Стоп\nОстановить проверку или выдачу на КЕСТО|Стоп",
                            "ToolPlugImage|Закрыть соединение с КЕСТО|Закрыть соединение с КЕСТО"));
    const auto all = buttons(view);

    view.setCanPowerOff(false);
    EXPECT_FALSE(isSeen(*all[2]));
    window.show_all();
    EXPECT_FALSE(isSeen(*all[2])) << "showing the window does not bring it back";
    view.setCanPowerOff(true);
    EXPECT_TRUE(isSeen(*all[2]->get_icon_widget()));
}

TEST_F(ToolbarViewsTest, SettersMayBeCalledFromAnyThread)
{
    auto view = std::make_unique<KesProgram::HardwareControlToolbarView>();
    place(*view);
    const auto all = buttons(*view);
    const auto callElsewhere = [&](bool can) {
        std::thread([&] {
            view->setCanStart(can);
            view->setCanStop(can);
            view->setCanPowerOff(can);
        }).join();
    };

    callElsewhere(false);
    EXPECT_TRUE(all[0]->get_sensitive()) << "not before the GUI thread gets to it";
    EXPECT_TRUE(waitFor([&] { return !all[0]->get_sensitive() && !all[2]->get_visible(); }));
    EXPECT_FALSE(all[1]->get_sensitive());

    callElsewhere(true);
    view->setCanStop(false);
    runPendingEvents();
    EXPECT_TRUE(all[0]->get_sensitive());
    EXPECT_FALSE(all[1]->get_sensitive()) << "the later call stands, though it acted first";
    EXPECT_TRUE(all[2]->get_visible());

    callElsewhere(false);
    view.reset();
    runPendingEvents();
    EXPECT_EQ(window.get_child(), nullptr) << "queued calls for a dead view do nothing";
}

} // namespace
