#include "support/GuiTest.h"
#include "support/LanguageScope.h"

#include <KesCommonView/AboutView.h>
#include <KesCommonView/AboutWindowActivatorPresenter.h>
#include <KesCommonView/Window.h>
#include <KesCommonView/WindowPlacement.h>
#include <KesCommonView/WindowRectangleManager.h>
#include <KesCommonView/WindowView.h>

#include <cmath>
#include <typeinfo>

namespace {

using Kes::RectangleF;
using KesTest::LabelView;
using KesTest::runPendingEvents;
using KesTest::waitFor;

TEST(WindowPlacementTest, bringsRectanglesOntoTheMonitorsThatAreThere)
{
    const std::vector<RectangleF> two{{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}};
    const std::vector<RectangleF> one{{0, 27, 1024, 573}};
    struct Case {
        RectangleF saved;
        const std::vector<RectangleF>& areas;
        RectangleF expected;
    };
    for (const auto& [saved, areas, expected] : {
             Case{{1800, 100, 800, 600}, two, {1800, 100, 800, 600}},
             Case{{2000, 100, 800, 400}, one, {224, 100, 800, 400}},
             Case{{-5000, -5000, 400, 300}, two, {0, 0, 400, 300}},
             Case{{9000, 400, 400, 300}, two, {2800, 400, 400, 300}},
             Case{{0, 0, 1920, 1080}, one, {0, 27, 1024, 573}},
             Case{{1e30F, 1e30F, 1e30F, 400}, one, {0, 200, 1024, 400}},
             Case{{5, 6, 7, 8}, {}, {5, 6, 7, 8}},
         })
        EXPECT_EQ(Kes::WindowPlacement::bringOnto(saved, areas), expected) << saved.x;
}

class WindowRectangleTest : public KesTest::GuiTest {
protected:
    void showAt(const RectangleF& rectangle)
    {
        window.show();
        EXPECT_TRUE(waitFor([&] { return window.get_mapped() && window.is_active(); }));
        EXPECT_TRUE(waitFor([&] { return manager.getRectangle() == rectangle; }));
    }

    Gtk::Window window;
    Kes::WindowRectangleManager manager{window};
};

TEST_F(WindowRectangleTest, rectangleSurvivesShowingMovingAndHiding)
{
    manager.setRectangle({150, 120, 500, 400});
    showAt({150, 120, 500, 400});
    manager.setRectangle({300, 260, 640, 420});
    showAt({300, 260, 640, 420});
    EXPECT_TRUE(waitFor([&] { return window.get_width() == 640 && window.get_height() == 420; }));
    runPendingEvents();
    std::vector<RectangleF> told;
    sigc::connection moved = window.signal_configure_event().connect(
        [&](GdkEventConfigure*) { return told.push_back(manager.getRectangle()), false; }, false);
    window.move(10, 20);
    EXPECT_TRUE(waitFor([&] { return !told.empty(); }));
    moved.disconnect();
    showAt({10, 20, 640, 420});
    EXPECT_EQ(told.at(0), (RectangleF{10, 20, 640, 420})) << "a window that is closed at once has its place";
    window.hide();
    runPendingEvents();
    EXPECT_EQ(manager.getRectangle(), (RectangleF{10, 20, 640, 420}));
    manager.setRectangle(manager.getRectangle());
    showAt({10, 20, 640, 420});
}

TEST_F(WindowRectangleTest, nonsenseChangesNothingAndFarAwayIsBroughtBack)
{
    manager.setRectangle({50, 60, 300, 200});
    for (const float width : {std::nanf(""), std::numeric_limits<float>::infinity(), 0.F, -1.F})
        manager.setRectangle({0, 0, width, 5});
    EXPECT_EQ(manager.getRectangle(), (RectangleF{50, 60, 300, 200}));
    manager.setRectangle({100000, -100000, 300, 200});
    EXPECT_LE(manager.getRectangle().x + 300, 1280);
    EXPECT_EQ(manager.getRectangle().y, 0);
}

class FirstFrameTest : public KesTest::GuiTest {
protected:
    int calls = 0;
    sigc::slot<void()> count = [this] { ++calls; };
};

TEST_F(FirstFrameTest, drawnWindowIsCompletedOnceAndGetsItsIcon)
{
    Kes::Window window;
    window.afterFirstFrame(count);
    EXPECT_TRUE(window.get_icon_list().empty());
    window.show();
    EXPECT_TRUE(waitFor([&] { return calls > 0; }));
    EXPECT_FALSE(window.get_icon_list().empty());
    window.hide();
    window.show();
    EXPECT_TRUE(waitFor([&] { return window.is_active(); }));
    runPendingEvents();
    EXPECT_EQ(calls, 1);
}

TEST_F(FirstFrameTest, hiddenWindowIsCompletedLaterAndADeadOneNever)
{
    std::make_unique<Kes::Window>()->afterFirstFrame(count);
    Kes::Window hidden;
    int hiddenCalls = 0;
    hidden.afterFirstFrame([&] { ++hiddenCalls; });
    EXPECT_TRUE(waitFor([&] { return hiddenCalls == 1; }));
    EXPECT_EQ(calls, 0);
}

class WindowViewTest : public KesTest::GuiTest {
protected:
    WindowViewTest()
    {
        view.signalClosed.connect([this] { ++closed; });
    }
    void show(Kes::IView* parent = nullptr)
    {
        view.show(parent);
        ASSERT_TRUE(waitFor([&] { return view.get_mapped() && view.is_active(); }));
    }

    int closed = 0;
    LabelView content{"Test object"};
    Kes::WindowView view;
};

TEST_F(WindowViewTest, scrollsLargeContentAndReplacesIt)
{
    Kes::WindowView parent;
    parent.show(nullptr);
    content.set_size_request(4000, 3000);
    view.setContent(content);
    show(&parent);
    EXPECT_EQ(view.get_transient_for(), &parent);
    EXPECT_TRUE(waitFor([&] { return content.get_allocated_width() >= 4000; }));
    EXPECT_TRUE(view.get_width() <= 1280 && view.get_height() <= 1024);
    LabelView other("Other");
    view.setContent(other);
    EXPECT_TRUE(waitFor([&] { return other.get_mapped(); }));
    EXPECT_EQ(content.get_parent(), nullptr);
    KesTest::NoWidgetView none;
    EXPECT_THROW(view.setContent(none), std::bad_cast);
    EXPECT_NE(other.get_parent(), nullptr);
}

TEST_F(WindowViewTest, everyWayOfClosingAnnouncesItOnce)
{
    view.setContent(content);
    view.close();
    EXPECT_EQ(closed, 0) << "was not open";
    const std::function<void()> ways[] = {[&] { view.close(); },
                                          [&] { KesTest::pressKey(view, GDK_KEY_Escape); },
                                          [&] { static_cast<Gtk::Window&>(view).close(); }};
    for (const auto& close : ways) {
        closed = 0;
        show();
        EXPECT_EQ(closed, 0);
        close();
        EXPECT_TRUE(waitFor([&] { return closed > 0; }));
        EXPECT_FALSE(view.get_visible());
        view.close();
        EXPECT_EQ(closed, 1);
    }
}

TEST_F(WindowViewTest, aboutKeepsTheTitleOfTheProgramsLanguageWhenItIsAskedForAgain)
{
    const KesTest::LanguageScope russian(lng::Russian);
    Kes::AboutView alone;
    alone.setProgramName("Program");
    EXPECT_EQ(alone.get_title(), "О программе");
    Kes::AboutWindowActivatorPresenter about;
    for (const char* version : {"1.0", "1.1"}) {
        about.show(nullptr, "Program", version);
        const auto* const window = dynamic_cast<Gtk::Window*>(about.getView());
        ASSERT_NE(window, nullptr);
        EXPECT_EQ(window->get_title(), "О программе");
    }
}

} // namespace
