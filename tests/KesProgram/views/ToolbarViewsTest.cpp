#include "ViewDoubles.h"

#include <KesProgram/views/FileToolbarView.h>
#include <KesProgram/views/HardwareControlToolbarView.h>
#include <KesProgram/views/HardwareSettingsToolbarView.h>
#include <KesProgram/views/ToolsToolbarView.h>

namespace {

using namespace KesTest;
using testing::ElementsAre;
using testing::ElementsAreArray;

/// What a user makes out of a button: the picture, the tooltip, and the name that is read out.
struct Shown {
    std::string image;
    std::string tooltip;
    std::string name;

    friend bool operator==(const Shown&, const Shown&) = default;
};

void PrintTo(const Shown& shown, std::ostream* out)
{
    *out << shown.image << " | " << shown.tooltip << " | " << shown.name;
}

std::vector<Gtk::ToolButton*> buttons(Gtk::Toolbar& toolbar)
{
    std::vector<Gtk::ToolButton*> result;
    for (int i = 0; i < toolbar.get_n_items(); ++i)
        if (auto* button = dynamic_cast<Gtk::ToolButton*>(toolbar.get_nth_item(i)))
            result.push_back(button);
    return result;
}

std::vector<Shown> shown(Gtk::Toolbar& toolbar)
{
    std::vector<Shown> result;
    for (auto* button : buttons(toolbar)) {
        std::string image;
        for (const auto& name : button->get_icon_widget()->get_style_context()->list_classes())
            image += name.raw();
        const auto inner = button->get_child();
        EXPECT_EQ(button->get_tooltip_text(), inner->get_tooltip_text());
        EXPECT_EQ(inner->get_accessible()->get_role(), Atk::ROLE_PUSH_BUTTON);
        result.push_back({image, inner->get_tooltip_text(), inner->get_accessible()->get_name()});
    }
    return result;
}

/// Clicks on every button, as a user does; the numbers of the signals that come.
template <typename... Signals>
std::vector<int> pressAll(Gtk::Toolbar& toolbar, Signals&... signals)
{
    const auto emitted = recordEmissions(signals...);
    for (auto* button : buttons(toolbar))
        if (button->is_sensitive())
            dynamic_cast<Gtk::Button&>(*button->get_child()).clicked();
    return *emitted;
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

TEST_F(ToolbarViewsTest, FileToolbar)
{
    KesProgram::FileToolbarView view;
    const auto all = buttons(view);
    EXPECT_THAT(pressAll(view, view.signalNew, view.signalOpen, view.signalSave), ElementsAre(0, 1, 2));
    view.setEnabledNew(false);
    view.setEnabledOpen(false);
    view.setEnabledOpen(true);
    EXPECT_FALSE(all[0]->get_sensitive());
    EXPECT_TRUE(all[1]->get_sensitive() && all[2]->get_sensitive());

    // A toolbar that is too short lists its buttons in a menu, which has only texts to tell them apart.
    std::vector<std::string> names;
    for (auto* button : all)
        for (auto* label : findWidgets<Gtk::Label>(*button->retrieve_proxy_menu_item()))
            names.push_back(label->get_text().raw());
    EXPECT_THAT(names, ElementsAre("Create", "Open", "Save"));
}

TEST_F(ToolbarViewsTest, ControlsATest)
{
    lng::language = lng::Russian;
    KesProgram::HardwareControlToolbarView view;
    place(view);
    EXPECT_THAT(
        shown(view),
        ElementsAre(Shown{"ToolStartImage", "Старт\nЗапустить проверку или выдачу на КЕСТО", "Старт"},
                    Shown{"ToolStopImage", "Стоп\nОстановить проверку или выдачу на КЕСТО", "Стоп"},
                    Shown{"ToolPlugImage", "Закрыть соединение с КЕСТО", "Закрыть соединение с КЕСТО"}));
    const auto all = buttons(view);
    EXPECT_THAT(pressAll(view, view.signalStart, view.signalStop, view.signalPowerOff), ElementsAre(0, 2))
        << "Stop is off at first";

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

TEST_F(ToolbarViewsTest, TakesForeignButtons)
{
    struct ButtonView : Gtk::ToolButton, Kes::IView {
    } button;
    LabelView label;
    NoWidgetView none;
    KesProgram::HardwareControlToolbarView control;
    control.addToolButton(none);
    EXPECT_EQ(control.get_n_items(), 3);
    control.addToolButton(button);
    control.addToolButton(label);
    EXPECT_EQ(control.get_nth_item(3), &button);
    EXPECT_EQ(control.get_nth_item(4)->get_child(), &label);

    KesProgram::HardwareSettingsToolbarView settings;
    control.remove(button);
    settings.addToolButton(button);
    EXPECT_EQ(settings.get_nth_item(1), &button);
    EXPECT_THAT(pressAll(settings, settings.signalSettings), ElementsAre(0));
}

TEST_F(ToolbarViewsTest, TestObjectCommandComesAndGoes)
{
    const Shown testObject{"ToolTestObjectImage", "Test Object\nViewing and Configuring a Test Object",
                           "Test Object"};
    const Shown report{"ToolReportImage", "Report\nTests object report", "Report"};
    KesProgram::ToolsToolbarView view;
    place(view);
    EXPECT_THAT(shown(view), ElementsAre(report));
    for (const bool show : {false, true, true, false, true, false}) {
        view.showTestObjectCommand(show);
        EXPECT_THAT(shown(view), show ? ElementsAreArray({testObject, report}) : ElementsAreArray({report}));
        EXPECT_TRUE(isSeen(*buttons(view)[0]->get_icon_widget()));
    }

    view.showTestObjectCommand(true);
    EXPECT_THAT(pressAll(view, view.signalTestObject, view.signalReport), ElementsAre(0, 1));
}

} // namespace
