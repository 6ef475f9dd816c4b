#include "StatusBarTest.h"

#include <KesProgram/archive/ArchiveManager.h>
#include <KesProgram/statusbar/StatusBarFilePresenter.h>
#include <KesProgram/statusbar/StatusBarInfoPresenter.h>

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
    const auto setElsewhere = [this](const char* text) {
        std::thread([&] { model._setState(text); }).join();
    };
    setElsewhere("Point 3 of 8");
    EXPECT_EQ(lastText(*area), "before") << "the widget was touched on another thread";
    EXPECT_TRUE(waitFor([&] { return lastText(*area) == "Point 3 of 8"; }));
    setElsewhere("overtaken");
    model._setState("end");
    runPendingEvents();
    EXPECT_EQ(lastText(*area), "end");
    setElsewhere("too late");
    area.reset();
    runPendingEvents();
}

} // namespace

} // namespace KesTest
