#include "StatusBarTest.h"

#include "support/LanguageScope.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/statusbar/ProgramStatusBarPresenter.h>
#include <KesProgram/statusbar/StatusBarFilePresenter.h>
#include <KesProgram/statusbar/StatusBarInfoPresenter.h>
#include <KesProgram/statusbar/StatusBarSyncPresenter.h>

#include <gtkmm/button.h>
#include <gtkmm/grid.h>
#include <gtkmm/label.h>

namespace KesTest {

namespace {

class AreasTest : public StatusBarTest {
protected:
    static std::string lastText(Kes::IPresenter& presenter)
    {
        const auto labels = findWidgets<Gtk::Label>(dynamic_cast<Gtk::Widget&>(*presenter.getView()));
        return labels.back()->get_text();
    }

    StatusModel model;
};

TEST_F(AreasTest, FileAreaFollowsTheArchive)
{
    model.extension = "???";
    model.init();
    KesProgram::StatusBarFilePresenter area(model);
    EXPECT_EQ(lastText(area), "[New].???");
    const std::string file = home.file("\xd0\xb0 b.abc");
    ASSERT_TRUE(model.getArchiveManager()->saveAs(file));
    EXPECT_EQ(lastText(area), file);
    model.getArchiveManager()->create("");
    EXPECT_EQ(lastText(area), "[New].???");

    model.extension = "";
    KesProgram::StatusBarFilePresenter blank(model);
    EXPECT_EQ(lastText(blank), "") << "without archive logic";
}

TEST_F(AreasTest, InfoAreaShowsTheStateOfWhicheverThread)
{
    model._setState("before");
    auto area = std::make_unique<KesProgram::StatusBarInfoPresenter>(model);
    EXPECT_EQ(lastText(*area), "before");
    std::thread([this] { model._setState("Point 3 of 8"); }).join();
    EXPECT_EQ(lastText(*area), "before") << "the widget was touched on another thread";
    EXPECT_TRUE(waitFor([&] { return lastText(*area) == "Point 3 of 8"; }));
    // Of many changes the last one counts, wherever the others came from.
    std::thread([this] {
        for (int i = 0; i < 1000; ++i)
            model._setState(std::to_string(i));
    }).join();
    model._setState("end");
    runPendingEvents();
    EXPECT_EQ(lastText(*area), "end");
    // It may die with changes queued.
    std::atomic<bool> isOver{false};
    std::thread run([&] {
        for (int i = 0; !isOver; ++i)
            model._setState(std::to_string(i));
    });
    turnMainLoop(20);
    area.reset();
    isOver = true;
    run.join();
    runPendingEvents();
}

TEST_F(AreasTest, SyncAreaNamesEveryMode)
{
    for (const auto language : {lng::English, lng::Russian}) {
        const LanguageScope scope(language);
        for (int i = 0; i < KesDevice::SyncModeCount; ++i) {
            const auto kind = static_cast<KesDevice::SyncModeKind>(i);
            const auto& mode = KesDevice::SyncMode::get(kind);
            SCOPED_TRACE(mode.getIdentifier());
            auto hardware = makeHardware(0);
            hardware->getSyncManager().setActiveMode(kind);
            KesProgram::StatusBarSyncPresenter area(*hardware);
            auto& button = dynamic_cast<Gtk::Button&>(*area.getView());
            auto& name = *findWidgets<Gtk::Label>(button).back();
            EXPECT_EQ(name.get_text(), mode.getShortName() ? mode.getShortName() : "");
            EXPECT_EQ(name.get_tooltip_text(), mode.getName() ? mode.getName() : "");
            EXPECT_EQ(button.get_sensitive(), mode.getInfo() != nullptr);
        }
    }
}

TEST_F(AreasTest, StatusBarHasItsThreeAreas)
{
    model.init();
    KesProgram::ProgramStatusBarPresenter statusBar(model);
    auto& grid = dynamic_cast<Gtk::Grid&>(*statusBar.getView());
    const auto hasClass = [&](int column, int row, const char* name) {
        auto* widget = grid.get_child_at(column, row);
        return widget && widget->get_style_context()->has_class(name);
    };
    EXPECT_TRUE(hasClass(0, 0, "statusInfoArea"));
    EXPECT_TRUE(hasClass(0, 1, "fileNameArea"));
    EXPECT_TRUE(hasClass(1, 1, "statusHardware"));
}

} // namespace

} // namespace KesTest
